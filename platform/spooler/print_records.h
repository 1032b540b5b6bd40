#pragma once

#include <cstddef>

#include "platform/base/types.h"

// Records and numbers of printing.

enum : int { CCHDEVICENAME = 32, CCHFORMNAME = 32 };

/// Which fields of a DEVMODE count.
enum : DWORD {
  DM_ORIENTATION = 0x00000001,
  DM_PAPERSIZE = 0x00000002,
  DM_PAPERLENGTH = 0x00000004,
  DM_PAPERWIDTH = 0x00000008,
  DM_COPIES = 0x00000100,
  DM_PRINTQUALITY = 0x00000400,
  DM_YRESOLUTION = 0x00002000,
  DM_COLLATE = 0x00008000,
  DM_FORMNAME = 0x00010000,
};
enum : short { DMORIENT_PORTRAIT = 1, DMORIENT_LANDSCAPE = 2 };
enum : short { DMCOLLATE_FALSE = 0, DMCOLLATE_TRUE = 1 };
/// Papers that have a number of their own; any other is DMPAPER_USER and told by its length and width.
enum : short {
  DMPAPER_LETTER = 1,
  DMPAPER_TABLOID = 3,
  DMPAPER_LEGAL = 5,
  DMPAPER_EXECUTIVE = 7,
  DMPAPER_A3 = 8,
  DMPAPER_A4 = 9,
  DMPAPER_A5 = 11,
  DMPAPER_B4 = 12,
  DMPAPER_B5 = 13,
  DMPAPER_FOLIO = 14,
  DMPAPER_A6 = 70,
  DMPAPER_USER = 256,
};

/// What a printer is asked to do with a sheet.
struct tagDEVMODEA {
  char dmDeviceName[CCHDEVICENAME];  ///< the printer's name, cut to fit
  WORD dmSpecVersion;
  WORD dmDriverVersion;
  WORD dmSize;  ///< of this record
  WORD dmDriverExtra;
  DWORD dmFields;  ///< DM_...
  short dmOrientation;
  short dmPaperSize;
  short dmPaperLength;  ///< tenths of a millimetre, of the upright sheet
  short dmPaperWidth;
  short dmScale;
  short dmCopies;
  short dmDefaultSource;
  short dmPrintQuality;  ///< dots per inch, horizontally
  short dmColor;
  short dmDuplex;
  short dmYResolution;  ///< dots per inch, vertically
  short dmTTOption;
  short dmCollate;
  char dmFormName[CCHFORMNAME];  ///< name of the paper
};
using DEVMODEA = tagDEVMODEA;
using DEVMODE = DEVMODEA;
using LPDEVMODE = DEVMODEA*;

enum : WORD { DN_DEFAULTPRN = 1 };
/// Names of a printer, as offsets in bytes from the start of the record to texts behind it.
struct tagDEVNAMES {
  WORD wDriverOffset;
  WORD wDeviceOffset;
  WORD wOutputOffset;  ///< the queue's port, or the file that is printed to
  WORD wDefault;       ///< DN_DEFAULTPRN
};
using DEVNAMES = tagDEVNAMES;

/// A document for StartDoc.
struct tagDOCINFOA {
  int cbSize;
  LPCSTR lpszDocName;
  LPCSTR lpszOutput;  ///< a file to print to, as PDF; null: where the device context leads
  LPCSTR lpszDatatype;
  DWORD fwType;
};
using DOCINFOA = tagDOCINFOA;
using DOCINFO = DOCINFOA;
using LPDOCINFO = DOCINFOA*;

/// Results of StartDoc, StartPage, EndPage, EndDoc and AbortDoc; any above 0 is success.
enum : int {
  SP_ERROR = -1,
  SP_APPABORT = -2,
  SP_USERABORT = -3,
  SP_OUTOFDISK = -4,
  SP_OUTOFMEMORY = -5,
  SP_NOANSWER = -50,  ///< ours: the print service doesn't answer
};

using ABORTPROC = BOOL (*)(HDC dc, int error);

enum : DWORD {
  PRINTER_ENUM_LOCAL = 2,
  PRINTER_ENUM_CONNECTIONS = 4,
  PRINTER_ENUM_NAME = 8,
};
enum : DWORD { PRINTER_ATTRIBUTE_DEFAULT = 0x4, PRINTER_ATTRIBUTE_LOCAL = 0x40 };
enum : DWORD {
  PRINTER_STATUS_PAUSED = 0x1,
  PRINTER_STATUS_ERROR = 0x2,
  PRINTER_STATUS_PAPER_JAM = 0x8,
  PRINTER_STATUS_PAPER_OUT = 0x10,
  PRINTER_STATUS_OFFLINE = 0x80,
  PRINTER_STATUS_PRINTING = 0x400,
  PRINTER_STATUS_NOT_AVAILABLE = 0x1000,  ///< the queue takes no jobs
  PRINTER_STATUS_TONER_LOW = 0x20000,
  PRINTER_STATUS_DOOR_OPEN = 0x400000,
};

/// A printer, as EnumPrinters tells of it at level 2.
struct _PRINTER_INFO_2A {
  LPSTR pServerName;
  LPSTR pPrinterName;
  LPSTR pShareName;
  LPSTR pPortName;
  LPSTR pDriverName;
  LPSTR pComment;
  LPSTR pLocation;
  DEVMODEA* pDevMode;
  LPSTR pSepFile;
  LPSTR pPrintProcessor;
  LPSTR pDatatype;
  LPSTR pParameters;
  void* pSecurityDescriptor;
  DWORD Attributes;  ///< PRINTER_ATTRIBUTE_...
  DWORD Priority;
  DWORD DefaultPriority;
  DWORD StartTime;
  DWORD UntilTime;
  DWORD Status;  ///< PRINTER_STATUS_...
  DWORD cJobs;
  DWORD AveragePPM;
};
using PRINTER_INFO_2A = _PRINTER_INFO_2A;
using PRINTER_INFO_2 = PRINTER_INFO_2A;

enum : DWORD {
  PD_ALLPAGES = 0x0,
  PD_SELECTION = 0x1,
  PD_PAGENUMS = 0x2,
  PD_NOSELECTION = 0x4,
  PD_NOPAGENUMS = 0x8,
  PD_COLLATE = 0x10,
  PD_PRINTTOFILE = 0x20,
  PD_PRINTSETUP = 0x40,
  PD_RETURNDC = 0x100,
  PD_RETURNIC = 0x200,
  PD_RETURNDEFAULT = 0x400,
  PD_ENABLEPRINTHOOK = 0x1000,
  PD_ENABLEPRINTTEMPLATE = 0x4000,
  PD_USEDEVMODECOPIES = 0x40000,
  PD_DISABLEPRINTTOFILE = 0x80000,
  PD_HIDEPRINTTOFILE = 0x100000,
};

/// Sees each message of the print dialog before the dialog does (WM_INITDIALOG after it). Anything but 0: the
/// message is dealt with.
using LPPRINTHOOKPROC = UINT (*)(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

/// What the print dialog begins with and what it answers.
struct tagPDA {
  DWORD lStructSize;
  HWND hwndOwner;
  HGLOBAL hDevMode;   ///< a DEVMODE; null: the printer's own. The caller frees what stands there afterwards
  HGLOBAL hDevNames;  ///< a DEVNAMES; null: the default printer. The caller frees it
  HDC hDC;            ///< out: with PD_RETURNDC, the caller's to delete
  DWORD Flags;        ///< PD_...
  WORD nFromPage;     ///< from 1
  WORD nToPage;
  WORD nMinPage;  ///< least and highest number that the user may type
  WORD nMaxPage;
  WORD nCopies;
  HINSTANCE hInstance;  ///< the library with the template
  LPARAM lCustData;
  LPPRINTHOOKPROC lpfnPrintHook;
  void* lpfnSetupHook;
  LPCSTR lpPrintTemplateName;
  LPCSTR lpSetupTemplateName;
  HGLOBAL hPrintTemplate;
  HGLOBAL hSetupTemplate;
};
using PRINTDLGA = tagPDA;
using PRINTDLG = PRINTDLGA;
using LPPRINTDLG = PRINTDLGA*;

/// What CommDlgExtendedError tells of the print dialog.
enum : DWORD {
  CDERR_STRUCTSIZE = 0x0001,
  CDERR_INITIALIZATION = 0x0002,
  CDERR_NOTEMPLATE = 0x0003,
  CDERR_NOHINSTANCE = 0x0004,
  CDERR_FINDRESFAILURE = 0x0006,
  CDERR_MEMALLOCFAILURE = 0x0009,
  CDERR_NOHOOK = 0x000B,
  PDERR_RETDEFFAILURE = 0x1003,
  PDERR_NODEVICES = 0x1007,
  PDERR_NODEFAULTPRN = 0x1008,
  PDERR_CREATEICFAILURE = 0x100A,
};
