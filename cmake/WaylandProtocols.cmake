# Code for Wayland protocols, made from their descriptions with the build.
find_package(PkgConfig REQUIRED)
pkg_check_modules(WaylandClient REQUIRED IMPORTED_TARGET GLOBAL wayland-client xkbcommon)
find_program(WAYLAND_SCANNER wayland-scanner REQUIRED)

# Debian ships these descriptions with bindings for Rust alone.
function(quillmoth_find_protocol variable path)
    file(GLOB found /usr/share/cargo/registry/wayland-protocols*/${path})
    if(NOT found)
        message(FATAL_ERROR "${path} is missing: run tools/setup")
    endif()
    list(GET found 0 found)
    set(${variable} ${found} PARENT_SCOPE)
endfunction()

# quillmoth_wayland_protocols(NAME description.xml ...): a library, with the header <description>.h of each.
function(quillmoth_wayland_protocols name)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/${name})
    file(MAKE_DIRECTORY ${folder})
    set(generated "")
    foreach(description IN LISTS ARGN)
        cmake_path(GET description STEM stem)
        add_custom_command(OUTPUT ${folder}/${stem}.h ${folder}/${stem}.c
            COMMAND ${WAYLAND_SCANNER} client-header ${description} ${folder}/${stem}.h
            COMMAND ${WAYLAND_SCANNER} private-code ${description} ${folder}/${stem}.c
            DEPENDS ${description} VERBATIM)
        list(APPEND generated ${folder}/${stem}.h ${folder}/${stem}.c)
    endforeach()
    add_library(${name} STATIC ${generated})
    target_include_directories(${name} SYSTEM PUBLIC ${folder})
    target_link_libraries(${name} PUBLIC PkgConfig::WaylandClient)
endfunction()
