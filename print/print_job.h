#pragma once

#include "platform/base/global_memory.h"
#include "platform/framework/wnd.h"
#include "platform/print_dialogs/print_dialog.h"
#include "print/print_failure.h"

class CPrintAbortDlg;

// What every job is made of. A job's objects are made in the order dialog, handles, stage, device context,
// and so the device context ends first: with it goes whatever was spooled by a job that failed.

/// Throws a negative result of the spooler.
inline void Check(int result) {
  if (result < 0) throw result;
}

/// Throws if the user has asked the job to stop. Looks at what waits in the queue first, so that a click made
/// while a page was decoded counts before the next sheet begins.
void ThrowIfAborted();

/// Closes the abort stage at the end of a job, however it ends. While the stage is open the parent is
/// disabled and the abort dialog is up. Without a parent there is no such stage. It is made before the print
/// dialog, which may disable the parent too.
class AbortStage {
 public:
  explicit AbortStage(CWnd* parent);
  AbortStage(const AbortStage&) = delete;
  AbortStage& operator=(const AbortStage&) = delete;
  /// Takes the dialog away, and gives the parent back as it was: a modal window on top of it may hold it
  /// disabled. One that is enabled gets the focus, also if the stage was never opened.
  ~AbortStage();

  /// Begins a job on a printing device context. A dialog that can't be made doesn't stop it.
  static void Open(CDC& dc, CWnd* parent);
  /// The job has ended in the print dialog: nothing is to be undone.
  void Dismiss() { m_parent = nullptr; }
  /// Throws PrintFailureAborted if the parent was destroyed meanwhile, as during the print dialog.
  void ThrowIfParentGone() const;

 private:
  HWND m_parent;  // a handle, since the window may go while the job pumps messages
  BOOL m_wasEnabled;
  CPrintAbortDlg* m_before;  // of a job within which a host has begun this one, or null
};

/// Frees what the print dialog has left in its record, but not the handles that were only lent to it.
class DialogHandles {
 public:
  DialogHandles(const PRINTDLGA& record, HGLOBAL lentMode, HGLOBAL lentNames)
      : m_record(record), m_lentMode(lentMode), m_lentNames(lentNames) {}
  DialogHandles(const DialogHandles&) = delete;
  DialogHandles& operator=(const DialogHandles&) = delete;
  ~DialogHandles() {
    if (m_record.hDevMode != m_lentMode) GlobalFree(m_record.hDevMode);
    if (m_record.hDevNames != m_lentNames) GlobalFree(m_record.hDevNames);
  }

 private:
  const PRINTDLGA& m_record;
  HGLOBAL m_lentMode;
  HGLOBAL m_lentNames;
};

/// Asks the user, or takes the default printer unasked. False: the user has given up. Throws
/// PrintFailureNoDefaultPrinter, or PrintFailureNoDeviceContext if the dialog itself failed.
bool ChoosePrinter(CPrintDialog& dialog, bool defaultPrinter);
/// Hands the record's device context to the wrapper, which ends it. Throws PrintFailureNoDeviceContext.
void TakeDeviceContext(HDC handle, CDC& dc);
