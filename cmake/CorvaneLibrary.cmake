# corvane_library(NAME DEPS...) makes the static library corvane_NAME from the
# sources of the calling folder. A folder without sources yet gives an
# interface library, so that the layering can be declared before the code.
function(corvane_library name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(sources)
    add_library(corvane_${name} STATIC ${sources})
    target_include_directories(corvane_${name} PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(corvane_${name} PUBLIC ${ARGN})
  else()
    add_library(corvane_${name} INTERFACE)
    target_include_directories(corvane_${name} INTERFACE ${PROJECT_SOURCE_DIR})
    target_link_libraries(corvane_${name} INTERFACE ${ARGN})
  endif()
endfunction()
