# What meets bytes from outside ends at the first overrun instead of going on: checked calls, guarded stacks, tables that
# the loader closes. tools/check_hardening looks at the outcome. The sanitizers bring checks of their own.
function(tessarel_harden name)
  target_link_options(${name} PRIVATE -Wl,-z,relro,-z,now,-z,noexecstack)
  if(NOT TESSAREL_SANITIZE)
    target_compile_options(${name} PRIVATE -fstack-protector-strong)
    # Checked calls need the optimizer's knowledge of sizes.
    target_compile_options(${name} PRIVATE $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=3>)
  endif()
endfunction()

# The shared libraries; each folder adds its own sources to its library.
function(tessarel_library name)
  add_library(${name} SHARED)
  add_library(Tessarel12::${name} ALIAS ${name})
  set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/tessarel12>)
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_compile_definitions(${name} PRIVATE ${name}_BUILD)
  tessarel_harden(${name})
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
# Where the helper program is, seen from the library.
file(RELATIVE_PATH helper_from_library /${CMAKE_INSTALL_LIBDIR} /${CMAKE_INSTALL_LIBEXECDIR}/tessarel12)
target_compile_definitions(LTWrap12 PRIVATE TESSAREL_HELPER_FOLDER="${helper_from_library}")
target_link_libraries(LTWrap12 PUBLIC TessarelPlatform PRIVATE TIFF::TIFF JPEG::JPEG PNG::PNG GIF::GIF)

tessarel_library(Tessarel12)
target_link_libraries(Tessarel12 PUBLIC LTWrap12 TessarelPlatform)

# For tests, of this system and of hosts: answers boxes, sends input, takes pictures.
tessarel_library(TessarelTesting)
set_target_properties(TessarelTesting PROPERTIES EXPORT_NAME Testing)
add_library(Tessarel12::Testing ALIAS TessarelTesting)
target_link_libraries(TessarelTesting PUBLIC TessarelPlatform PRIVATE Qt6::Widgets)
target_compile_definitions(TessarelTesting PRIVATE QT_NO_KEYWORDS)

# What the libraries hide, for tests and benchmarks of the inside: the same objects, linked statically.
function(tessarel_inside name library)
  add_library(${name} STATIC EXCLUDE_FROM_ALL $<TARGET_OBJECTS:${library}>)
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARGN})
endfunction()
tessarel_inside(TessarelPlatformInside TessarelPlatform Qt6::Widgets ZLIB::ZLIB $<$<BOOL:${CUPS_FOUND}>:Cups::Cups>)
tessarel_inside(LTWrap12Inside LTWrap12 TessarelPlatform TIFF::TIFF JPEG::JPEG PNG::PNG GIF::GIF)
