#pragma once

#include "frames/detail/viewer_frame_open.h"
#include "frames/detail/viewer_frame_shell.h"

// What reaches the viewer frame beside its commands about pages: its message map. For the sources of the two
// frames.

BEGIN_TEMPLATE_MESSAGE_MAP(CViewerFrame, Base, CViewerCommands<Base>)
ON_WM_CREATE()
ON_WM_CLOSE()
ON_WM_SETFOCUS()
ON_COMMAND(ID_APP_EXIT, OnAppExit)
ON_COMMAND(ID_ZP_FILE_EXPORT, OnFileExport)
ON_UPDATE_COMMAND_UI(ID_ZP_FILE_EXPORT, OnUpdateFileExport)
ON_COMMAND(ID_ZP_VIEW_THUMBNAILS, OnViewThumbnails)
ON_UPDATE_COMMAND_UI(ID_ZP_VIEW_THUMBNAILS, OnUpdateViewThumbnails)
END_MESSAGE_MAP()
