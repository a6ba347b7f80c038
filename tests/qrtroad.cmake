# The list dialog, the write options panel and the QRT translator tab.
tamsel_add_test(test_qmlistdialog ${CMAKE_CURRENT_LIST_DIR}/test_qmlistdialog.cpp)
tamsel_add_test(test_qrtzebcore ${CMAKE_CURRENT_LIST_DIR}/test_qrtzebcore.cpp
                                ${CMAKE_CURRENT_LIST_DIR}/qrtroad_helpers.h)
tamsel_add_test(test_qrtzeblator ${CMAKE_CURRENT_LIST_DIR}/test_qrtzeblator.cpp
                                 ${CMAKE_CURRENT_LIST_DIR}/qrtroad_helpers.h)
