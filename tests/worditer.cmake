# The word iterator's unit test, and a separate project that uses the
# installed library the way another program would.
add_executable(test_worditer ${CMAKE_CURRENT_LIST_DIR}/test_worditer.cpp)
target_link_libraries(test_worditer PRIVATE worditer Qt6::Test)
add_test(NAME test_worditer COMMAND test_worditer)
set_tests_properties(test_worditer PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen" TIMEOUT 60)

# A sanitized library needs the sanitizer runtime in the program that loads it.
set(_worditer_consumer_flags "${CMAKE_CXX_FLAGS}")
if(TAMSEL_SANITIZE)
    string(APPEND _worditer_consumer_flags " -fsanitize=address,undefined")
endif()
find_program(WORDITER_NM nm)
add_test(NAME worditer_consumer
    COMMAND ${CMAKE_COMMAND}
        -DBUILD_DIR=${CMAKE_BINARY_DIR}
        -DCONFIG=$<CONFIG>
        -DSOURCE_DIR=${CMAKE_CURRENT_LIST_DIR}/worditer_consumer
        -DWORK_DIR=${CMAKE_CURRENT_BINARY_DIR}/worditer_consumer
        -DGENERATOR=${CMAKE_GENERATOR}
        -DCXX_COMPILER=${CMAKE_CXX_COMPILER}
        -DCXX_FLAGS=${_worditer_consumer_flags}
        -DQt6_DIR=${Qt6_DIR}
        -DNM=${WORDITER_NM}
        -P ${CMAKE_CURRENT_LIST_DIR}/worditer_consumer_test.cmake
)
set_tests_properties(worditer_consumer PROPERTIES TIMEOUT 300)
