# What every library of ours is compiled with.
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

# Files that know the window toolkit: forms and dialogs (frm*), and other parts of windows (*_ui).
set(ZEP_WINDOW_FILES "/frm[A-Z][^/]*$|_ui\\.[a-z]+$")

function(zep_library name)
  cmake_parse_arguments(PARSE_ARGV 1 library "" "" "HEADERS;SOURCES;USES")
  if(NOT library_SOURCES)
    return()
  endif()
  add_library(${name} STATIC ${library_SOURCES})
  target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${CMAKE_SOURCE_DIR} FILES ${library_HEADERS})
  set_target_properties(${name} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
  target_link_libraries(${name} PUBLIC zep_options)
  foreach(used IN LISTS library_USES)
    if(TARGET zep_${used})
      target_link_libraries(${name} PUBLIC zep_${used})
    endif()
  endforeach()
endfunction()

# zep_folder(NAME USES...): the files of the folder NAME as the static library zep_NAME, linking the folders it uses.
# Left out are its windows, files that hold a program's main (*_main.cpp), and the other systems' files: *_posix.cpp is
# for Linux, *_windows.cpp for Windows. An empty folder gives nothing.
function(zep_folder name)
  file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${name}/*.h)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${name}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "${ZEP_WINDOW_FILES}|_main\\.cpp$")
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "_posix\\.cpp$")
  else()
    list(FILTER sources EXCLUDE REGEX "_windows\\.cpp$")
  endif()
  list(FILTER headers EXCLUDE REGEX "${ZEP_WINDOW_FILES}")
  zep_library(zep_${name} HEADERS ${headers} SOURCES ${sources} USES ${ARGN})
endfunction()

# zep_toolkit(): the window toolkit as the target zep_toolkit. None where wxWidgets is not installed.
function(zep_toolkit)
  find_package(wxWidgets 3.2 QUIET COMPONENTS html aui core base)
  if(NOT wxWidgets_FOUND)
    message(STATUS "wxWidgets 3.2 is missing: zepdlca is left out")
    return()
  endif()
  add_library(zep_toolkit INTERFACE)
  target_include_directories(zep_toolkit SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
  target_compile_definitions(zep_toolkit INTERFACE ${wxWidgets_DEFINITIONS} $<$<CONFIG:Debug>:${wxWidgets_DEFINITIONS_DEBUG}>)
  target_compile_options(zep_toolkit INTERFACE ${wxWidgets_CXX_FLAGS})
  target_link_libraries(zep_toolkit INTERFACE ${wxWidgets_LIBRARIES})
  if(NOT WIN32)  # names for screen readers go to the toolkit below
    find_package(PkgConfig REQUIRED)
    pkg_check_modules(gtk REQUIRED gtk+-3.0)
    target_include_directories(zep_toolkit SYSTEM INTERFACE ${gtk_INCLUDE_DIRS})
    target_link_libraries(zep_toolkit INTERFACE ${gtk_LINK_LIBRARIES})
  endif()
endfunction()

# zep_folder_ui(NAME USES...): the windows of the folder NAME (frm* and *_ui files) as the static library zep_NAME_ui,
# which also links the rest of its folder; all of shell/ is windows. Nothing without the toolkit.
function(zep_folder_ui name)
  if(NOT TARGET zep_toolkit)
    return()
  endif()
  file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${name}/*.h)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${name}/*.cpp)
  if(name STREQUAL "shell")
    list(FILTER sources EXCLUDE REGEX "_main\\.cpp$")
  else()
    list(FILTER headers INCLUDE REGEX "${ZEP_WINDOW_FILES}")
    list(FILTER sources INCLUDE REGEX "${ZEP_WINDOW_FILES}")
  endif()
  zep_library(zep_${name}_ui HEADERS ${headers} SOURCES ${sources} USES ${name} ${ARGN})
endfunction()

# zep_program(NAME MAIN FOLDER...): the program NAME with its main in MAIN, on top of the libraries of the folders.
# Nothing where the first of them is not built.
function(zep_program name main folder)
  if(NOT TARGET zep_${folder})
    return()
  endif()
  add_executable(${name} ${main})
  foreach(used IN LISTS folder ARGN)
    target_link_libraries(${name} PRIVATE zep_${used})
  endforeach()
endfunction()
