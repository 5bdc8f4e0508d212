# SPDX-License-Identifier: Apache-2.0
# A source for each header that includes nothing else, so that no header leans on its includer.
file(GLOB_RECURSE headers RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS
     ${PROJECT_SOURCE_DIR}/platform/*.h ${PROJECT_SOURCE_DIR}/ZUBUtils/*.h
     ${PROJECT_SOURCE_DIR}/constraints/*.h ${PROJECT_SOURCE_DIR}/ciphers/*.h
     ${PROJECT_SOURCE_DIR}/PPDX/*.h ${PROJECT_SOURCE_DIR}/twoway/*.h ${PROJECT_SOURCE_DIR}/panel/*.h
     ${PROJECT_SOURCE_DIR}/VelonFeatures/*.h)
set(sources)
foreach(header IN LISTS headers)
  string(REPLACE "/" "_" name ${header})
  set(source ${CMAKE_BINARY_DIR}/headers/${name}.cpp)
  set(text "#include \"${header}\"\n")
  set(former "")
  if(EXISTS ${source})
    file(READ ${source} former)
  endif()
  if(NOT former STREQUAL text)
    file(WRITE ${source} "${text}")
  endif()
  list(APPEND sources ${source})
endforeach()
add_library(headers_compile_alone OBJECT ${sources})
