# Installation, with package files for other projects.
include(CMakePackageConfigHelpers)

set_target_properties(velaplatformplaces PROPERTIES EXPORT_NAME Places)
set_target_properties(velasystem PROPERTIES EXPORT_NAME System)
install(TARGETS velaplatformplaces velasystem places_platform_headers EXPORT VelaPlacesTargets)
install(TARGETS places placesd)
install(DIRECTORY include/places platform/include/vela DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(FILES ${PROJECT_BINARY_DIR}/include/places/Version.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/places)
install(FILES platform/include/dataversion.h platform/include/msgclient.h platform/include/pps.h platform/include/slog2.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES examples/data/airports.geojson examples/data/cities.geojson examples/data/README.md
        DESTINATION ${CMAKE_INSTALL_DATADIR}/vela-places)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/VelaPlaces)
install(EXPORT VelaPlacesTargets NAMESPACE Vela:: DESTINATION ${package_folder})
configure_package_config_file(cmake/VelaPlacesConfig.cmake.in ${PROJECT_BINARY_DIR}/VelaPlacesConfig.cmake
                              INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VelaPlacesConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VelaPlacesConfig.cmake ${PROJECT_BINARY_DIR}/VelaPlacesConfigVersion.cmake
        DESTINATION ${package_folder})

# Distributions have libraries in lib/<architecture>.
file(RELATIVE_PATH prefix_from_pkgconfig ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/velaplatformplaces.pc.in velaplatformplaces.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/velaplatformplaces.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

configure_file(service/systemd/placesd.service.in placesd.service @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/placesd.service service/systemd/placesd.socket
        service/systemd/placesd-external.socket
        DESTINATION lib/systemd/user)
