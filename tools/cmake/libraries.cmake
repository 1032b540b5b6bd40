# The three shared libraries; each folder adds its own sources to its library.
function(tessarel_library name)
  add_library(${name} SHARED)
  add_library(Tessarel12::${name} ALIAS ${name})
  set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/tessarel12>)
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_compile_definitions(${name} PRIVATE ${name}_BUILD)
endfunction()

tessarel_library(TessarelPlatform)
target_link_libraries(TessarelPlatform PRIVATE Qt6::Widgets ZLIB::ZLIB)
if(CUPS_FOUND)
  target_link_libraries(TessarelPlatform PRIVATE Cups::Cups)
  target_compile_definitions(TessarelPlatform PRIVATE TESSAREL_CUPS)
endif()
target_compile_definitions(TessarelPlatform PRIVATE QT_NO_KEYWORDS)
# Most of the build time of the window layer is Qt's headers.
target_precompile_headers(TessarelPlatform PRIVATE <QApplication> <QPainter> <QWidget> <algorithm> <map> <memory> <vector>)

tessarel_library(LTWrap12)
target_link_libraries(LTWrap12 PUBLIC TessarelPlatform PRIVATE TIFF::TIFF JPEG::JPEG PNG::PNG GIF::GIF)

tessarel_library(Tessarel12)
target_link_libraries(Tessarel12 PUBLIC LTWrap12 TessarelPlatform)
