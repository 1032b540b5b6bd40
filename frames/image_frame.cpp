#include "frames/image_frame.h"

#include "frames/detail/viewer_frame_map.h"

template class CViewerFrame<CFrameWnd>;

IMPLEMENT_DYNCREATE(CImageFrame, CFrameWnd)

bool CImageFrame::DoModalViewer(CWnd* parent, const char* path, const char* title) {
  return RunModalFile(new CImageFrame, parent, path, title);
}

bool CImageFrame::DoModalViewer(CWnd* parent, void* block, unsigned long size, const char* title) {
  return RunModalMemory(new CImageFrame, parent, block, size, title);
}
