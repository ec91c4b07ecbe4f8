# vantrel.dll: the logic, the presentation and the resources.
vantrel_sources(presentation_sources src/*/win/*.cpp)
if(NOT presentation_sources)
  return()
endif()

enable_language(RC)
set(library_files ${presentation_sources})
if(EXISTS "${CMAKE_SOURCE_DIR}/src/resources/vantrel.rc")
  list(APPEND library_files src/resources/vantrel.rc)
  # windres does not report what a script includes.
  file(GLOB_RECURSE resource_parts CONFIGURE_DEPENDS src/resources/*.h src/resources/*.rc src/resources/*.ttf
    src/resources/*.manifest src/resources/*.png src/resources/*.bmp src/resources/*.ico src/resources/*.cur)
  set_source_files_properties(src/resources/vantrel.rc PROPERTIES OBJECT_DEPENDS "${resource_parts}")
endif()
# A definition file, because the interpreters ask for plain names.
if(EXISTS "${CMAKE_SOURCE_DIR}/src/hosts/win/vantrel.def")
  list(APPEND library_files src/hosts/win/vantrel.def)
endif()

add_library(vantrel SHARED ${library_files})
set_target_properties(vantrel PROPERTIES PREFIX "" OUTPUT_NAME vantrel)
target_link_libraries(vantrel PRIVATE vantrel_logic
  comctl32 comdlg32 gdi32 user32 msimg32 uxtheme gdiplus imm32 shell32 shlwapi advapi32 ole32 winspool htmlhelp)
if(NOT MSVC)
  # Only what the definition file (or an export attribute) names leaves the library.
  target_link_options(vantrel PRIVATE -Wl,--exclude-all-symbols)
endif()
