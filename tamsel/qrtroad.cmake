# The QRT->ZEB road: the write options panel, its pictures and the tab.
target_sources(tamselapp PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/pictures.cpp ${CMAKE_CURRENT_LIST_DIR}/pictures.h
    ${CMAKE_CURRENT_LIST_DIR}/run_button.xpm ${CMAKE_CURRENT_LIST_DIR}/script_button.xpm
    ${CMAKE_CURRENT_LIST_DIR}/qrtzebcore.cpp ${CMAKE_CURRENT_LIST_DIR}/qrtzebcore.h
    ${CMAKE_CURRENT_LIST_DIR}/qrtzeblator.cpp ${CMAKE_CURRENT_LIST_DIR}/qrtzeblator.h
)
