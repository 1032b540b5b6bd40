#include "docview/zp_sdi_frame.h"

#include "docview/detail/zp_frame_map.h"
#include "docview/detail/zp_main_frame_def.h"

template class CZPFrame<CFrameWnd>;
template class CZPMainFrame<CZPFrame<CFrameWnd>>;

IMPLEMENT_DYNCREATE(CZPsdiFrame, CFrameWnd)
