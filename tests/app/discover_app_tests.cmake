# Read by ctest before it runs anything: one test per QtTest class that the window tests
# register, so that a new class runs without being listed anywhere. KAVOR_APP_TESTS names the
# test program.
execute_process(COMMAND "${KAVOR_APP_TESTS}" --list-classes
  OUTPUT_VARIABLE classes ERROR_VARIABLE problem RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  # A test that fails, so that a program that cannot list its classes is not a silent pass.
  add_test(app.discovery "${KAVOR_APP_TESTS}" --list-classes)
  return()
endif()
string(REPLACE "\n" ";" classes "${classes}")
foreach(class IN LISTS classes)
  if(class)
    add_test(app.${class} "${KAVOR_APP_TESTS}" ${class})
    set_tests_properties(app.${class} PROPERTIES ENVIRONMENT
      "QT_QPA_PLATFORM=offscreen;TZ=UTC;LANG=C.UTF-8;LC_ALL=C.UTF-8")
  endif()
endforeach()
