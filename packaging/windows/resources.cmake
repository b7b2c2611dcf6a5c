# What the system knows of the programs before they run, from velmora.rc. REQUIRES: `images`, the
# icon's images, the largest last.
find_program(ICOTOOL icotool REQUIRED)
set(resources ${CMAKE_CURRENT_BINARY_DIR}/resources)
set(program_icon ${resources}/velmora.ico)
file(MAKE_DIRECTORY ${resources})
set(smaller ${images})
list(POP_BACK smaller largest)
add_custom_command(OUTPUT ${program_icon}
    COMMAND ${ICOTOOL} --create --output ${program_icon} ${smaller} --raw ${largest}
    DEPENDS ${images} VERBATIM)
set(description ${CMAKE_CURRENT_LIST_DIR}/velmora.rc)
set_property(SOURCE ${description} PROPERTY OBJECT_DEPENDS ${program_icon} ${CMAKE_CURRENT_LIST_DIR}/velmora.manifest)
foreach(program velmora velmora-cli)
    # By itself, since the compiler of resources knows none of the options that the programs are compiled with.
    add_library(${program}-resources OBJECT ${description})
    target_include_directories(${program}-resources PRIVATE ${resources} ${CMAKE_CURRENT_LIST_DIR})
    target_compile_definitions(${program}-resources PRIVATE VELMORA_PROGRAM=${program}
        VELMORA_MAJOR=${PROJECT_VERSION_MAJOR} VELMORA_MINOR=${PROJECT_VERSION_MINOR}
        VELMORA_REVISION=${PROJECT_VERSION_PATCH})
    target_link_libraries(${program} PRIVATE ${program}-resources)
endforeach()
