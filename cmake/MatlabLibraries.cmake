# libmx.dll and libmex.dll: a MATLAB for the tests and the workbench, under the names that the editor looks for.
foreach(name libmx libmex)
  add_library(fake_${name} SHARED tests/hosts/matlab_libraries/${name}.cpp)
  set_target_properties(fake_${name} PROPERTIES PREFIX "" OUTPUT_NAME ${name})
  target_include_directories(fake_${name} PRIVATE tests)
  target_link_libraries(fake_${name} PRIVATE vantrel_options)
endforeach()

# MATLAB knows a MEX file by its extension.
if(TARGET vantrel)
  add_custom_command(TARGET vantrel POST_BUILD
    COMMAND "${CMAKE_COMMAND}" -E copy "$<TARGET_FILE:vantrel>" "$<TARGET_FILE_DIR:vantrel>/vantrel.mexw64")
endif()
