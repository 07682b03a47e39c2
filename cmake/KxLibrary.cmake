# The library as its users see it, made of the modules: kxmessage::kxmessage (shared) and
# kxmessage::kxmessage_static, their installation, the CMake package and the pkg-config file.
# Included by the top project after all of src/.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

file(GLOB KX_PUBLIC_HEADERS CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/kxmessage/*.h)

# What a module needs besides other modules is what the library needs.
get_property(KX_MODULES GLOBAL PROPERTY KX_MODULES)
set(KX_LIBRARY_OBJECTS)
set(KX_LIBRARY_NEEDS)
foreach(module IN LISTS KX_MODULES)
  list(APPEND KX_LIBRARY_OBJECTS $<TARGET_OBJECTS:${module}>)
  get_target_property(needs ${module} LINK_LIBRARIES)
  foreach(need IN LISTS needs)
    if(need AND NOT need MATCHES "^kx_")
      list(APPEND KX_LIBRARY_NEEDS ${need})
    endif()
  endforeach()
endforeach()
list(REMOVE_DUPLICATES KX_LIBRARY_NEEDS)
# Whoever links the static library links these too, from whatever folder.
if("Threads::Threads" IN_LIST KX_LIBRARY_NEEDS)
  find_package(Threads REQUIRED GLOBAL)
endif()
if("CURL::libcurl" IN_LIST KX_LIBRARY_NEEDS)
  find_package(CURL REQUIRED GLOBAL)
endif()

# kx_add_library(NAME SHARED|STATIC)
function(kx_add_library name kind)
  add_library(${name} ${kind} ${KX_LIBRARY_OBJECTS})
  add_library(kxmessage::${name} ALIAS ${name})
  target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/include FILES
                                ${KX_PUBLIC_HEADERS})
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_link_libraries(${name} PRIVATE ${KX_LIBRARY_NEEDS} $<BUILD_INTERFACE:kx_build_options>)
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX VERIFY_INTERFACE_HEADER_SETS ON)
endfunction()

kx_add_library(kxmessage SHARED)
# Before version 1 every minor version may break what was compiled against another.
set_target_properties(
  kxmessage PROPERTIES VERSION ${PROJECT_VERSION}
                       SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
target_compile_definitions(kxmessage INTERFACE $<$<PLATFORM_ID:Windows>:KX_USING_SHARED>)
# A symbol that nobody defines shows when the library is made, not when a program starts.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT KX_SANITIZE)
  target_link_options(kxmessage PRIVATE -Wl,--no-undefined)
endif()
kx_add_library(kxmessage_static STATIC)
if(NOT WIN32)
  set_target_properties(kxmessage_static PROPERTIES OUTPUT_NAME kxmessage)
endif()

if(KX_INSTALL)
  set(KX_PACKAGE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/kxmessage)
  install(
    TARGETS kxmessage kxmessage_static
    EXPORT kxmessageTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  install(EXPORT kxmessageTargets NAMESPACE kxmessage:: DESTINATION ${KX_PACKAGE_FOLDER})

  # What users of the static library must find too. pkg-config is told of shared libraries beside
  # it: what these need themselves is seldom installed in its static form.
  set(KX_PACKAGE_FINDS)
  set(KX_PC_LIBS)
  foreach(need IN LISTS KX_LIBRARY_NEEDS)
    if(need STREQUAL "Threads::Threads")
      string(APPEND KX_PACKAGE_FINDS "find_dependency(Threads)\n")
      string(APPEND KX_PC_LIBS " -pthread")
    elseif(need STREQUAL "CURL::libcurl")
      string(APPEND KX_PACKAGE_FINDS "find_dependency(CURL)\n")
      string(APPEND KX_PC_LIBS " -lcurl")
    elseif(need STREQUAL "LibXslt::LibXslt")
      string(APPEND KX_PACKAGE_FINDS "find_dependency(LibXslt)\n")
      string(APPEND KX_PC_LIBS " -lxslt -lxml2")
    elseif(need MATCHES "::")
      message(FATAL_ERROR "KxLibrary.cmake does not say how users of the package find ${need}")
    else()
      string(APPEND KX_PC_LIBS " -l${need}")
    endif()
  endforeach()
  if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang" AND NOT APPLE)
    string(APPEND KX_PC_LIBS " -lstdc++ -lm")
  endif()
  string(STRIP "${KX_PC_LIBS}" KX_PC_LIBS)

  configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/cmake/kxmessageConfig.cmake.in
    ${PROJECT_BINARY_DIR}/kxmessageConfig.cmake INSTALL_DESTINATION ${KX_PACKAGE_FOLDER})
  write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/kxmessageConfigVersion.cmake COMPATIBILITY SameMinorVersion)
  # The pkg-config file finds the rest from where it lies itself, so that a tree can be moved.
  file(RELATIVE_PATH KX_PC_PREFIX /kx/${CMAKE_INSTALL_LIBDIR}/pkgconfig /kx)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/kxmessage.pc.in ${PROJECT_BINARY_DIR}/kxmessage.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/kxmessageConfig.cmake
                ${PROJECT_BINARY_DIR}/kxmessageConfigVersion.cmake
          DESTINATION ${KX_PACKAGE_FOLDER})
  install(FILES ${PROJECT_BINARY_DIR}/kxmessage.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()
