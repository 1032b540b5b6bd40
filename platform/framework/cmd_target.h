#pragma once

#include <bit>

#include "platform/base/object.h"
#include "platform/base/types.h"
#include "platform/window/messages.h"

class CCmdTarget;
class CCmdUI;

/// Any handler, as it lies in a message map. It is called through its own type again, which nSig tells.
using AFX_PMSG = void (CCmdTarget::*)();

/// The shape of a handler: how a message's words become its arguments.
enum AfxSig : UINT {
  AfxSig_end = 0,
  AfxSig_bD,         ///< BOOL (CDC*)
  AfxSig_bWww,       ///< BOOL (CWnd*, UINT, UINT)
  AfxSig_is,         ///< int (LPCREATESTRUCT)
  AfxSig_lwl,        ///< LRESULT (WPARAM, LPARAM)
  AfxSig_vv,         ///< void ()
  AfxSig_vw,         ///< void (UINT)
  AfxSig_vb,         ///< void (BOOL)
  AfxSig_vbw,        ///< void (BOOL, UINT)
  AfxSig_vtimer,     ///< void (UINT_PTR)
  AfxSig_vwww,       ///< void (UINT, UINT, UINT), of key messages
  AfxSig_vwp,        ///< void (UINT, CPoint), of mouse messages
  AfxSig_vwii,       ///< void (UINT, int, int)
  AfxSig_vii,        ///< void (int, int)
  AfxSig_vscroll,    ///< void (UINT, UINT, CScrollBar*)
  AfxSig_vW,         ///< void (CWnd*), the window in wParam
  AfxSig_vWl,        ///< void (CWnd*), the window in lParam
  AfxSig_vWp,        ///< void (CWnd*, CPoint)
  AfxSig_vactivate,  ///< void (UINT, CWnd*, BOOL)
  AfxSig_bwheel,     ///< BOOL (UINT, short, CPoint)
  AfxSig_vdrop,      ///< void (HDROP)
  AfxSig_vmenu,      ///< void (CMenu*, UINT, BOOL)
  AfxSig_vmdi,       ///< void (BOOL, CWnd*, CWnd*), of WM_MDIACTIVATE
  AfxSig_vselect,    ///< void (UINT, UINT, HMENU)
  AfxSig_cmd,        ///< void ()
  AfxSig_cmdid,      ///< void (UINT id)
  AfxSig_cmdui,      ///< void (CCmdUI*)
};

struct AFX_MSGMAP_ENTRY {
  UINT nMessage;
  UINT nCode;  ///< of WM_COMMAND the notification, or CN_...
  UINT nID;
  UINT nLastID;
  UINT nSig;  ///< AfxSig_end closes a map
  AFX_PMSG pfn;
};

struct AFX_MSGMAP {
  const AFX_MSGMAP* pBaseMap;  ///< null at the root
  const AFX_MSGMAP_ENTRY* lpEntries;
};

/// Codes of OnCmdMsg that are no notifications of a control.
enum : int { CN_COMMAND = 0, CN_UPDATE_COMMAND_UI = -1 };

/// Base of everything that takes commands.
class PLATFORM_API CCmdTarget : public CObject {
  DECLARE_DYNAMIC(CCmdTarget)
 public:
  ~CCmdTarget() override;
  CCmdTarget(const CCmdTarget&) = delete;
  CCmdTarget& operator=(const CCmdTarget&) = delete;
  /// Routes a command (CN_COMMAND or a control's code) or asks for its state (CN_UPDATE_COMMAND_UI, extra is
  /// the CCmdUI). TRUE if this target, or one that it asks, has a handler; with handlerInfo it is only looked
  /// for.
  virtual BOOL OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo);
  static const AFX_MSGMAP* GetThisMessageMap();

  /// Shows the wait cursor until as many calls of EndWaitCursor.
  void BeginWaitCursor();
  void EndWaitCursor();

 protected:
  CCmdTarget() = default;
  virtual const AFX_MSGMAP* GetMessageMap() const;
};

/// While it lives, the wait cursor is shown.
class PLATFORM_API CWaitCursor : public CCmdTarget {
 public:
  CWaitCursor() { BeginWaitCursor(); }
  CWaitCursor(const CWaitCursor&) = delete;
  CWaitCursor& operator=(const CWaitCursor&) = delete;
  ~CWaitCursor() override { EndWaitCursor(); }
};

/// Looks through a map and its bases. Null if there is no entry.
PLATFORM_API const AFX_MSGMAP_ENTRY* AfxFindMessageEntry(const AFX_MSGMAP* map, UINT message, UINT code,
                                                         UINT id);

#define DECLARE_MESSAGE_MAP()                   \
 public:                                        \
  static const AFX_MSGMAP* GetThisMessageMap(); \
                                                \
 protected:                                     \
  const AFX_MSGMAP* GetMessageMap() const override;

#define BEGIN_MESSAGE_MAP(theClass, baseClass)        \
  const AFX_MSGMAP* theClass::GetMessageMap() const { \
    return GetThisMessageMap();                       \
  }                                                   \
  const AFX_MSGMAP* theClass::GetThisMessageMap() {   \
    using ThisClass [[maybe_unused]] = theClass;      \
    using TheBaseClass = baseClass;                   \
    static const AFX_MSGMAP_ENTRY entries[] = {
/// The same for a class template with one type parameter.
#define BEGIN_TEMPLATE_MESSAGE_MAP(theClass, type, baseClass) \
  template <typename type>                                    \
  const AFX_MSGMAP* theClass<type>::GetMessageMap() const {   \
    return GetThisMessageMap();                               \
  }                                                           \
  template <typename type>                                    \
  const AFX_MSGMAP* theClass<type>::GetThisMessageMap() {     \
    using ThisClass = theClass<type>;                         \
    using TheBaseClass = baseClass;                           \
    static const AFX_MSGMAP_ENTRY entries[] = {
#define END_MESSAGE_MAP()                                                     \
  { 0, 0, 0, 0, AfxSig_end, nullptr }                                         \
  }                                                                           \
  ;                                                                           \
  static const AFX_MSGMAP map = {TheBaseClass::GetThisMessageMap(), entries}; \
  return &map;                                                                \
  }

/// A handler in the form in which a message map keeps it.
template <typename Class, typename Result, typename... Args>
AFX_PMSG AfxEraseHandler(Result (Class::*handler)(Args...)) {
  return std::bit_cast<AFX_PMSG>(static_cast<Result (CCmdTarget::*)(Args...)>(handler));
}
/// Calls it through its own type again.
template <typename Result, typename... Args>
Result AfxCallHandler(CCmdTarget* target, AFX_PMSG handler, Args... args) {
  return (target->*std::bit_cast<Result (CCmdTarget::*)(Args...)>(handler))(args...);
}

// The cast checks the handler's shape.
#define PLATFORM_HANDLER(type, handler) AfxEraseHandler(static_cast<type>(&ThisClass::handler))

#define ON_COMMAND(id, handler)               \
  {WM_COMMAND, static_cast<UINT>(CN_COMMAND), \
   id,         id,                            \
   AfxSig_cmd, PLATFORM_HANDLER(void(ThisClass::*)(), handler)},
#define ON_COMMAND_RANGE(id, lastId, handler)   \
  {WM_COMMAND,   static_cast<UINT>(CN_COMMAND), \
   id,           lastId,                        \
   AfxSig_cmdid, PLATFORM_HANDLER(void(ThisClass::*)(UINT), handler)},
#define ON_UPDATE_COMMAND_UI(id, handler)                 \
  {WM_COMMAND,   static_cast<UINT>(CN_UPDATE_COMMAND_UI), \
   id,           id,                                      \
   AfxSig_cmdui, PLATFORM_HANDLER(void(ThisClass::*)(CCmdUI*), handler)},
#define ON_UPDATE_COMMAND_UI_RANGE(id, lastId, handler)   \
  {WM_COMMAND,   static_cast<UINT>(CN_UPDATE_COMMAND_UI), \
   id,           lastId,                                  \
   AfxSig_cmdui, PLATFORM_HANDLER(void(ThisClass::*)(CCmdUI*), handler)},
#define ON_CONTROL(code, id, handler) \
  {WM_COMMAND, static_cast<UINT>(code), id, id, AfxSig_cmd, PLATFORM_HANDLER(void(ThisClass::*)(), handler)},
#define ON_MESSAGE(message, handler) \
  {message, 0, 0, 0, AfxSig_lwl, PLATFORM_HANDLER(LRESULT(ThisClass::*)(WPARAM, LPARAM), handler)},
