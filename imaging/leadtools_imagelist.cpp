#include "imaging/core/guard.h"
#include "imaging/imagelist/control.h"
#include "imaging/ltwrap.h"

using imaging::ImageListControl;

namespace {

template <typename Record>
Record& Require(Record* record) {
  if (record == nullptr)
    imaging::Fail(imaging::kErrorInvalidParameter, "A record of the image list is missing");
  return *record;
}

/// Runs an operation on the control behind a window; the result is 1.
template <typename Work>
int With(HWND window, Work work) {
  return imaging::Guarded([&] {
    work(ImageListControl::Find(window));
    return 1;
  });
}

}  // namespace

void LEADTOOLS::UseImageListControl() {
  imaging::Guarded([] { ImageListControl::RegisterWindowClass(); });
}

int LEADTOOLS::ImgListInsert(HWND window, _LILITEM* item) {
  return With(window, [&](auto& control) { control.Insert(Require(item)); });
}

int LEADTOOLS::ImgListInsertList(HWND window, void* list, CString (*caption)(int)) {
  return With(window, [&](auto& control) { control.InsertList(list, caption); });
}

int LEADTOOLS::ImgListGetItem(HWND window, unsigned int index, _LILITEM* item) {
  return With(window, [&](auto& control) { control.Get(index, Require(item)); });
}

int LEADTOOLS::ImgListSetItem(HWND window, unsigned int index, _LILITEM* item) {
  return With(window, [&](auto& control) { control.Set(index, Require(item)); });
}

int LEADTOOLS::ImgListClear(HWND window) {
  return With(window, [](auto& control) { control.Clear(); });
}

int LEADTOOLS::ImgListGetItemCount(HWND window) {
  return ImageListControl::Find(window).Count();
}

int LEADTOOLS::ImgListGetPagesCount(HWND window) {
  return ImageListControl::Find(window).Layout().Screens();
}

int LEADTOOLS::ImgListGetPage(HWND window) {
  const ImageListControl& control = ImageListControl::Find(window);
  return control.Layout().Screen(control.Scroll());
}

int LEADTOOLS::ImgListEnsureVisible(HWND window, int index) {
  return With(window, [&](auto& control) {
    if (index < 0 || index >= control.Count())
      imaging::Fail(imaging::kErrorInvalidParameter, "The image list has no item %d", index);
    control.EnsureVisible(index);
  });
}

int LEADTOOLS::ImgListGetSelOptions(HWND window, _LILSELOPTION* options) {
  return With(window, [&](auto& control) { Require(options) = control.GetSelectionOptions(); });
}

int LEADTOOLS::ImgListSetSelOptions(HWND window, _LILSELOPTION* options) {
  return With(window, [&](auto& control) { control.SetSelectionOptions(Require(options)); });
}

int LEADTOOLS::ImgListGetItemOptions(HWND window, _LILITEMOPTION* options) {
  return With(window, [&](auto& control) { Require(options) = control.GetItemOptions(); });
}

int LEADTOOLS::ImgListSetItemOptions(HWND window, _LILITEMOPTION* options) {
  return With(window, [&](auto& control) { control.SetItemOptions(Require(options)); });
}
