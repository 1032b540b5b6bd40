#include "platform/framework/cmd_target.h"

#include "platform/framework/cmd_ui.h"
#include "platform/framework/object_hold.h"

IMPLEMENT_DYNAMIC(CCmdTarget, CObject)

CCmdTarget::~CCmdTarget() {
  platform::ForgetHeld(this);
}

const AFX_MSGMAP* CCmdTarget::GetThisMessageMap() {
  static const AFX_MSGMAP_ENTRY entries[] = {{0, 0, 0, 0, AfxSig_end, nullptr}};
  static const AFX_MSGMAP map = {nullptr, entries};
  return &map;
}

const AFX_MSGMAP* CCmdTarget::GetMessageMap() const {
  return GetThisMessageMap();
}

const AFX_MSGMAP_ENTRY* AfxFindMessageEntry(const AFX_MSGMAP* map, UINT message, UINT code, UINT id) {
  for (; map != nullptr; map = map->pBaseMap)
    for (const AFX_MSGMAP_ENTRY* entry = map->lpEntries; entry->nSig != AfxSig_end; ++entry)
      if (entry->nMessage == message && entry->nCode == code && id >= entry->nID && id <= entry->nLastID)
        return entry;
  return nullptr;
}

BOOL CCmdTarget::OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo) {
  const AFX_MSGMAP_ENTRY* entry =
      AfxFindMessageEntry(GetMessageMap(), WM_COMMAND, static_cast<UINT>(code), id);
  if (entry == nullptr) return FALSE;
  if (handlerInfo != nullptr) return TRUE;
  const platform::ObjectHold hold(this);
  switch (entry->nSig) {
    case AfxSig_cmd:
      AfxCallHandler<void>(this, entry->pfn);
      return TRUE;
    case AfxSig_cmdid:
      AfxCallHandler<void>(this, entry->pfn, id);
      return TRUE;
    case AfxSig_cmdui:
      AfxCallHandler<void>(this, entry->pfn, static_cast<CCmdUI*>(extra));
      return TRUE;
    default:
      return FALSE;
  }
}
