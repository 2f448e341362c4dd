# zep_folder(NAME USES...): the files of the folder NAME as the static library zep_NAME, linking the folders it uses.
# Files that hold a program's main (*_main.cpp) are left out, and so are the other systems' files: *_posix.cpp is for
# Linux, *_windows.cpp for Windows. An empty folder gives nothing.
add_library(zep_options INTERFACE)
target_include_directories(zep_options INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_options(zep_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor
  -Woverloaded-virtual -Wsuggest-override -Wformat=2 -Wundef -Wduplicated-cond -Wduplicated-branches
  -Wlogical-op -Wcast-align -Wextra-semi
  $<$<CONFIG:Debug>:-Wnull-dereference>  # optimising, GCC 12 gives false alarms inside Asio
  "$<$<NOT:$<CONFIG:Debug>>:-Wno-array-bounds;-Wno-stringop-overread;-Wno-maybe-uninitialized>"  # likewise in std::vector
  -Wno-restrict)  # GCC 12 gives a false alarm for "literal" + std::string when optimising
if(ZEP_WARNINGS_ARE_ERRORS)
  target_compile_options(zep_options INTERFACE -Werror)
endif()
target_link_libraries(zep_options INTERFACE zep_headers)

function(zep_folder name)
  file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${name}/*.h)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${name}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/frm[A-Z][^/]*$|_main\\.cpp$")
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "_posix\\.cpp$")
  else()
    list(FILTER sources EXCLUDE REGEX "_windows\\.cpp$")
  endif()
  list(FILTER headers EXCLUDE REGEX "/frm[A-Z][^/]*$")
  if(NOT sources)
    return()
  endif()
  add_library(zep_${name} STATIC ${sources})
  target_sources(zep_${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${CMAKE_SOURCE_DIR} FILES ${headers})
  set_target_properties(zep_${name} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
  target_link_libraries(zep_${name} PUBLIC zep_options)
  foreach(used IN LISTS ARGN)
    if(TARGET zep_${used})
      target_link_libraries(zep_${name} PUBLIC zep_${used})
    endif()
  endforeach()
endfunction()

# zep_windows(FOLDER...): the windows (frm* files) of the folders and everything in shell/ as the static library
# zep_windows. Nothing where wxWidgets is not installed.
function(zep_windows)
  find_package(wxWidgets 3.2 QUIET COMPONENTS html aui core base)
  if(NOT wxWidgets_FOUND)
    message(STATUS "wxWidgets 3.2 is missing: zepdlca is left out")
    return()
  endif()
  set(headers)
  set(sources)
  foreach(folder IN LISTS ARGN)
    file(GLOB folder_headers CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/frm*.h)
    file(GLOB folder_sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/frm*.cpp)
    list(APPEND headers ${folder_headers})
    list(APPEND sources ${folder_sources})
  endforeach()
  file(GLOB shell_headers CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/shell/*.h)
  file(GLOB shell_sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/shell/*.cpp)
  list(FILTER shell_sources EXCLUDE REGEX "_main\\.cpp$")
  add_library(zep_windows STATIC ${sources} ${shell_sources})
  target_sources(zep_windows PUBLIC FILE_SET HEADERS BASE_DIRS ${CMAKE_SOURCE_DIR} FILES ${headers} ${shell_headers})
  set_target_properties(zep_windows PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
  target_include_directories(zep_windows SYSTEM PUBLIC ${wxWidgets_INCLUDE_DIRS})
  target_compile_definitions(zep_windows PUBLIC ${wxWidgets_DEFINITIONS} $<$<CONFIG:Debug>:${wxWidgets_DEFINITIONS_DEBUG}>)
  target_compile_options(zep_windows PUBLIC ${wxWidgets_CXX_FLAGS})
  target_link_libraries(zep_windows PUBLIC ${wxWidgets_LIBRARIES} zep_upgrade zep_simulator)
  if(NOT WIN32)  # names for screen readers go to the toolkit below
    find_package(PkgConfig REQUIRED)
    pkg_check_modules(gtk REQUIRED gtk+-3.0)
    target_include_directories(zep_windows SYSTEM PRIVATE ${gtk_INCLUDE_DIRS})
    target_link_libraries(zep_windows PUBLIC ${gtk_LINK_LIBRARIES})
  endif()
endfunction()

# zep_program(NAME MAIN FOLDER): the program NAME with its main in MAIN, on top of the library of FOLDER.
function(zep_program name main folder)
  if(NOT EXISTS ${CMAKE_SOURCE_DIR}/${main} OR NOT TARGET zep_${folder})
    return()
  endif()
  add_executable(${name} ${main})
  target_link_libraries(${name} PRIVATE zep_${folder})
endfunction()
