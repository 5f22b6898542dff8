# What is installed: the library (one file, plug-in and linkable library in one), a link to it in the plug-in
# folder, the public headers and a CMake package with ManualT0::Logic and ManualT0::Host.
include(CMakePackageConfigHelpers)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME ManualT0Logic) # programs are installed by their own folders, unnamed

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ManualT0Logic)
set(plugin_dir ${CMAKE_INSTALL_LIBDIR}/ManualT0Logic/plugins)
set(host_include ${CMAKE_INSTALL_INCLUDEDIR}/ManualT0Host)

# Beside one another: the library finds the host's two without a search path of the machine.
set_target_properties(ManualT0Logic PROPERTIES EXPORT_NAME Logic INSTALL_RPATH $ORIGIN)
install(TARGETS ManualT0Logic EXPORT ManualT0LogicTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES logic/ManualT0Logic.h logic/ManualT0LogicExport.h logic/SymbolListType.h
              widgets/OrderQueuePanel.h widgets/ManualT0DoubleSpinbox.h widgets/ManualT0TraderCombo.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ManualT0Logic)

# A link, never a copy: a second file would be a second hub in the process.
file(RELATIVE_PATH library_file ${CMAKE_INSTALL_PREFIX}/${plugin_dir}
     ${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/libManualT0Logic.so.${PROJECT_VERSION_MAJOR})
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/install)
file(CREATE_LINK ${library_file} ${CMAKE_BINARY_DIR}/install/libManualT0Logic.so SYMBOLIC)
install(FILES ${CMAKE_BINARY_DIR}/install/libManualT0Logic.so DESTINATION ${plugin_dir})

if(NOT MANUALT0_HOST_PACKAGE)
  foreach(target t0wire t0host)
    get_target_property(build_include ${target} INTERFACE_INCLUDE_DIRECTORIES)
    set_target_properties(${target} PROPERTIES
      INTERFACE_INCLUDE_DIRECTORIES "$<BUILD_INTERFACE:${build_include}>;$<INSTALL_INTERFACE:${host_include}>"
      INSTALL_RPATH $ORIGIN)
  endforeach()
  set_target_properties(t0host PROPERTIES EXPORT_NAME Host)
  set_target_properties(t0wire PROPERTIES EXPORT_NAME Wire)
  install(TARGETS t0host t0wire EXPORT ManualT0LogicTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(DIRECTORY host/include/ DESTINATION ${host_include} FILES_MATCHING PATTERN "*.h")
  # What a program needs that opens a session: the channel it hands over.
  install(FILES host/wire/Envelope.h host/wire/MessageBody.h host/wire/MessageChannel.h host/wire/StreamChannel.h
          DESTINATION ${host_include})
endif()

install(EXPORT ManualT0LogicTargets NAMESPACE ManualT0:: DESTINATION ${package_dir})
configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/ManualT0LogicConfig.cmake.in
                              ${CMAKE_BINARY_DIR}/install/ManualT0LogicConfig.cmake
                              INSTALL_DESTINATION ${package_dir} PATH_VARS plugin_dir)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/install/ManualT0LogicConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/install/ManualT0LogicConfig.cmake
              ${CMAKE_BINARY_DIR}/install/ManualT0LogicConfigVersion.cmake
        DESTINATION ${package_dir})
unset(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME)
