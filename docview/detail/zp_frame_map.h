#pragma once

#include "docview/detail/zp_frame_shell.h"

// What reaches a document's frame: its message map. For the sources of the two frames.

BEGIN_TEMPLATE_MESSAGE_MAP(CZPFrame, Base, CViewerCommands<Base>)
ON_UPDATE_COMMAND_UI(ID_ZP_FILE_EXPORT, OnUpdateZpFileExport)
ON_COMMAND(ID_ZP_VIEW_THUMBNAILS, OnZpViewThumbnails)
ON_UPDATE_COMMAND_UI(ID_ZP_VIEW_THUMBNAILS, OnUpdateZpViewThumbnails)
END_MESSAGE_MAP()
