# libworditer: the word iterator as a shared library with an installed CMake
# package, so that other programs can find_package(WordIter) and link it.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

add_library(worditer SHARED
    ${CMAKE_CURRENT_LIST_DIR}/worditer.cpp
    ${CMAKE_CURRENT_LIST_DIR}/worditer.h
    ${CMAKE_CURRENT_LIST_DIR}/worditer_export.h
)
add_library(WordIter::worditer ALIAS worditer)
target_compile_definitions(worditer PRIVATE WORDITER_BUILDING)
target_include_directories(worditer PUBLIC
    $<BUILD_INTERFACE:${CMAKE_CURRENT_LIST_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/worditer>
)
target_link_libraries(worditer PUBLIC Qt6::Core)
target_compile_features(worditer PUBLIC cxx_std_17)
# Only the class is exported; everything else stays inside the library.
set_target_properties(worditer PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    AUTOMOC OFF
)

set(WORDITER_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/WordIter)

install(TARGETS worditer EXPORT WordIterTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT worditer NAMELINK_COMPONENT worditer
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT worditer
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT worditer
)
install(FILES
    ${CMAKE_CURRENT_LIST_DIR}/worditer.h
    ${CMAKE_CURRENT_LIST_DIR}/worditer_export.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/worditer COMPONENT worditer
)
install(EXPORT WordIterTargets
    NAMESPACE WordIter::
    DESTINATION ${WORDITER_CMAKE_DIR} COMPONENT worditer
)
configure_package_config_file(
    ${CMAKE_CURRENT_LIST_DIR}/../cmake/WordIterConfig.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/WordIterConfig.cmake
    INSTALL_DESTINATION ${WORDITER_CMAKE_DIR}
)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/WordIterConfigVersion.cmake
    VERSION ${PROJECT_VERSION}
    COMPATIBILITY SameMinorVersion
)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/WordIterConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/WordIterConfigVersion.cmake
    DESTINATION ${WORDITER_CMAKE_DIR} COMPONENT worditer
)
