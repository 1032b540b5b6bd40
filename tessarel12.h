#pragma once

// Everything that a host needs of the image-viewing component.

#include "docview/zp_page.h"
#include "frames/image_frame.h"
#include "frames/image_mdi_child.h"
#include "imagewindow/frame_link.h"
#include "imagewindow/image_window.h"
#include "imaging/ltwrap.h"
#include "library/report_error.h"
#include "library/resource_ids.h"
#include "library/tessarel_ext.h"
#include "platform/framework/app.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/mdi_wnd.h"
#include "platform/framework/message_box.h"
#include "platform/framework/wnd.h"
#include "print/print_bitmap.h"
#include "print/print_failure.h"
#include "print/print_file.h"
