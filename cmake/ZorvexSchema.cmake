# zorvex_generate_schema() makes the target zorvex_generate and sets, for the whole project,
#   ZORVEX_GENERATED_INCLUDE  the folder of the headers zorvex60/... and of schema/GeneratedClasses.h
#   ZORVEX_GENERATED_SOURCES  the sources that belong to the library
#   ZORVEX_REFERENCE_DIR      the reference of the vocabulary as HTML

# Into how many sources classes and enumerations are split: enough to compile side by side, few
# enough that the common headers aren't read too often.
set(ZORVEX_CLASS_SOURCES 16)
set(ZORVEX_ENUM_SOURCES 6)

# Appends <stem>00.cpp, <stem>01.cpp ... to a list.
function(zorvex_numbered_sources list stem count)
  math(EXPR last "${count} - 1")
  foreach(index RANGE ${last})
    if(index LESS 10)
      set(index 0${index})
    endif()
    list(APPEND ${list} ${stem}${index}.cpp)
  endforeach()
  set(${list} ${${list}} PARENT_SCOPE)
endfunction()

function(zorvex_generate_schema)
  set(out ${CMAKE_BINARY_DIR}/generated)
  set(vocabulary ${PROJECT_SOURCE_DIR}/src/schema/vocabulary)
  set(members ${PROJECT_SOURCE_DIR}/src/schema/members)
  set(object ${PROJECT_SOURCE_DIR}/include/zorvex_api/Object.h)
  set(reference ${CMAKE_BINARY_DIR}/docs/vocabulary)
  file(GLOB inputs CONFIGURE_DEPENDS ${vocabulary}/*.txt ${members}/*.inc)

  set(sources ${out}/sources/Registration.cpp)
  zorvex_numbered_sources(sources ${out}/sources/Classes ${ZORVEX_CLASS_SOURCES})
  zorvex_numbered_sources(sources ${out}/sources/Enums ${ZORVEX_ENUM_SOURCES})

  set(stamp ${out}/generated.stamp)
  add_custom_command(
    OUTPUT ${stamp}
    BYPRODUCTS ${sources}
    COMMAND schemagen --vocabulary ${vocabulary} --members ${members} --object ${object}
            --out ${out} --class-sources ${ZORVEX_CLASS_SOURCES}
            --enum-sources ${ZORVEX_ENUM_SOURCES} --reference ${reference}
    COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
    DEPENDS schemagen ${inputs} ${object}
    COMMENT "Generating classes and enumerations from the vocabulary"
    VERBATIM)
  add_custom_target(zorvex_generate DEPENDS ${stamp})
  set_source_files_properties(${sources} PROPERTIES GENERATED TRUE)

  set(ZORVEX_GENERATED_INCLUDE ${out} CACHE INTERNAL "")
  set(ZORVEX_GENERATED_SOURCES ${sources} CACHE INTERNAL "")
  set(ZORVEX_REFERENCE_DIR ${reference} CACHE INTERNAL "")
endfunction()
