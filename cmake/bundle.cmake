# macOS: the window as an application bundle, with its icon.
set(icon_set ${CMAKE_CURRENT_BINARY_DIR}/kestrova.iconset)
set(bundle_icon ${CMAKE_CURRENT_BINARY_DIR}/kestrova.icns)
set(copy_icons COMMAND ${CMAKE_COMMAND} -E make_directory ${icon_set})
foreach(size 16 32 128 256 512)
  list(APPEND copy_icons COMMAND ${CMAKE_COMMAND} -E copy
    ${CMAKE_CURRENT_SOURCE_DIR}/resources/icons/kestrova-${size}.png ${icon_set}/icon_${size}x${size}.png)
endforeach()
add_custom_command(OUTPUT ${bundle_icon} ${copy_icons}
  COMMAND iconutil --convert icns --output ${bundle_icon} ${icon_set})
set_source_files_properties(${bundle_icon} PROPERTIES MACOSX_PACKAGE_LOCATION Resources)

target_sources(kestrova PRIVATE ${bundle_icon})
set_target_properties(kestrova PROPERTIES
  MACOSX_BUNDLE ON
  MACOSX_BUNDLE_INFO_PLIST ${CMAKE_CURRENT_SOURCE_DIR}/resources/macos/Info.plist.in
  MACOSX_BUNDLE_GUI_IDENTIFIER example.kestrova.Kestrova
  MACOSX_BUNDLE_BUNDLE_NAME Kestrova
  MACOSX_BUNDLE_BUNDLE_VERSION ${PROJECT_VERSION}
  MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION}
  MACOSX_BUNDLE_ICON_FILE kestrova.icns)
