# The ZEB->MTX road: the choice of a database body and the matrix tab.
target_sources(tamselapp PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/cdbindexdialog.cpp ${CMAKE_CURRENT_LIST_DIR}/cdbindexdialog.h
    ${CMAKE_CURRENT_LIST_DIR}/bodyindexfield.cpp ${CMAKE_CURRENT_LIST_DIR}/bodyindexfield.h
    ${CMAKE_CURRENT_LIST_DIR}/zebmtxlator.cpp ${CMAKE_CURRENT_LIST_DIR}/zebmtxlator.h
)
