# The ZEB->MTX road: the body list and the index field through the matrix tab,
# and the matrix tab with its runs through the console and the stand-in.
tamsel_add_test(test_bodyindex ${CMAKE_CURRENT_LIST_DIR}/test_bodyindex.cpp)
tamsel_add_test(test_zebmtxlator ${CMAKE_CURRENT_LIST_DIR}/test_zebmtxlator.cpp)
