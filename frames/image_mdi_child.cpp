#include "frames/image_mdi_child.h"

#include "frames/detail/viewer_frame_map.h"

template class CViewerFrame<CMDIChildWnd>;

IMPLEMENT_DYNCREATE(CImageMDIChild, CMDIChildWnd)

bool CImageMDIChild::DoModalViewer(CWnd* parent, const char* path, const char* title) {
  return RunModalFile(new CImageMDIChild, parent, path, title);
}

bool CImageMDIChild::DoModalViewer(CWnd* parent, void* block, unsigned long size, const char* title) {
  return RunModalMemory(new CImageMDIChild, parent, block, size, title);
}
