# The block page's logic beneath its widgets: the stored text, the reader,
# the search, the columns, the modes and the plot's ranges and decimation. It needs Qt Core alone,
# so that the fuzz targets build it as it is; scripts/check-layout keeps
# every header of QtGui, QtWidgets and QtCharts out of it.
add_library(blockcore STATIC
    ${CMAKE_CURRENT_LIST_DIR}/blocklayouts.cpp ${CMAKE_CURRENT_LIST_DIR}/blocklayouts.h
    ${CMAKE_CURRENT_LIST_DIR}/blocktext.cpp ${CMAKE_CURRENT_LIST_DIR}/blocktext.h
    ${CMAKE_CURRENT_LIST_DIR}/blockreader.cpp ${CMAKE_CURRENT_LIST_DIR}/blockreader.h
    ${CMAKE_CURRENT_LIST_DIR}/blockviewsearch.cpp ${CMAKE_CURRENT_LIST_DIR}/blockviewsearch.h
    ${CMAKE_CURRENT_LIST_DIR}/blockasciifinder.cpp ${CMAKE_CURRENT_LIST_DIR}/blockasciifinder.h
    ${CMAKE_CURRENT_LIST_DIR}/blockcolumns.cpp ${CMAKE_CURRENT_LIST_DIR}/blockcolumns.h
    ${CMAKE_CURRENT_LIST_DIR}/blockmodes.cpp ${CMAKE_CURRENT_LIST_DIR}/blockmodes.h
    ${CMAKE_CURRENT_LIST_DIR}/blockplotdecimator.cpp ${CMAKE_CURRENT_LIST_DIR}/blockplotdecimator.h
    ${CMAKE_CURRENT_LIST_DIR}/blockplotrange.cpp ${CMAKE_CURRENT_LIST_DIR}/blockplotrange.h
)
target_include_directories(blockcore PUBLIC ${CMAKE_CURRENT_LIST_DIR})
target_link_libraries(blockcore PUBLIC Qt6::Core platform)
