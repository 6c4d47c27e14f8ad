# Makes the linker's version script from cmake/exported.txt, the one list of what a host may see.

# alidade_version_script(<out>): reads the list, writes <out>
function(alidade_version_script out)
    set(list_file "${PROJECT_SOURCE_DIR}/cmake/exported.txt")
    set_property(DIRECTORY "${PROJECT_SOURCE_DIR}" APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${list_file}")

    set(entries "")
    set(patterns "")
    file(STRINGS "${list_file}" lines)
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "#.*" "" line "${line}")
        string(STRIP "${line}" line)
        if(line STREQUAL "")
            continue()
        elseif(line MATCHES "^entry ([A-Za-z_][A-Za-z0-9_]*)$")
            string(APPEND entries "        ${CMAKE_MATCH_1};\n")
        elseif(line MATCHES "^class ([A-Za-z_][A-Za-z0-9_:]*)$")
            set(name "${CMAKE_MATCH_1}")
            # A quoted name is taken as it stands, an unquoted one as a pattern; '?' stands for the blank, which an
            # unquoted pattern can't hold. A host's class that derives from ours may need the thunks.
            string(APPEND patterns
                "            ${name}::*;\n"
                "            \"vtable for ${name}\";\n"
                "            \"VTT for ${name}\";\n"
                "            \"typeinfo for ${name}\";\n"
                "            \"typeinfo name for ${name}\";\n"
                "            non-virtual?thunk?to?${name}::*;\n"
                "            virtual?thunk?to?${name}::*;\n")
        elseif(line MATCHES "^inline ([A-Za-z_][A-Za-z0-9_:]*)$")
            set(name "${CMAKE_MATCH_1}")
            string(APPEND patterns
                "            \"vtable for ${name}\";\n"
                "            \"typeinfo for ${name}\";\n"
                "            \"typeinfo name for ${name}\";\n")
        elseif(line MATCHES "^function ([A-Za-z_][A-Za-z0-9_]*)$")
            string(APPEND patterns "            ${CMAKE_MATCH_1}?*;\n") # the '?' stands for the parenthesis
        elseif(line MATCHES "^namespace ([A-Za-z_][A-Za-z0-9_:]*)$")
            string(APPEND patterns "            ${CMAKE_MATCH_1}::*;\n")
        else()
            message(FATAL_ERROR "${list_file}: can't read the line '${line}'")
        endif()
    endforeach()

    set(script "{\n")
    if(entries OR patterns)
        string(APPEND script "    global:\n${entries}")
    endif()
    if(patterns)
        string(APPEND script "        extern \"C++\" {\n${patterns}        };\n")
    endif()
    string(APPEND script "    local: *;\n};\n")
    file(CONFIGURE OUTPUT "${out}" CONTENT "${script}" @ONLY)
endfunction()
