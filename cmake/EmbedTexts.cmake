# Texts that a program carries inside: each file becomes an array of string constants, its pieces in order.
# As a script (cmake -P) this file does the work, at build time; included, it offers zuv_embed_texts().

# Cut `text` behind line ends into exactly `count` pieces of about the same size.
function(cut_text text count out)
    string(LENGTH "${text}" length)
    set(pieces "")
    set(begin 0)
    foreach(index RANGE 1 ${count})
        math(EXPR end "${length} * ${index} / ${count}")
        if(index LESS count)
            string(SUBSTRING "${text}" ${end} -1 rest)
            string(FIND "${rest}" "\n" line_end)
            math(EXPR end "${end} + ${line_end} + 1")
        endif()
        math(EXPR size "${end} - ${begin}")
        if(size LESS 1 OR (index LESS count AND line_end LESS 0))
            message(FATAL_ERROR "a text of ${length} bytes has no ${count} pieces of whole lines")
        endif()
        string(SUBSTRING "${text}" ${begin} ${size} piece)
        string(APPEND pieces "    R\"zuv(${piece})zuv\",\n")
        set(begin ${end})
    endforeach()
    set(${out} "${pieces}" PARENT_SCOPE)
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
    set(content "#include \"${HEADER}\"\n")
    foreach(row ${TEXTS})
        string(REPLACE "=" ";" row "${row}")
        list(GET row 0 array)
        list(GET row 1 file)
        list(GET row 2 count)
        file(READ "${file}" text)
        cut_text("${text}" ${count} pieces)
        string(APPEND content
            "\nconst char *const ${array}[] = {\n${pieces}};\n"
            "static_assert(sizeof(${array}) / sizeof(${array}[0]) == ${array}_LENGTH);\n")
    endforeach()
    file(WRITE "${OUTPUT}" "${content}")
    return()
endif()

set(ZUV_EMBED_SCRIPT ${CMAKE_CURRENT_LIST_FILE})

# zuv_embed_texts(<room> HEADER <header> TEXTS <array>=<file>=<count>...): add to the room a source that defines
# the arrays, which the header declares with the length <array>_LENGTH. Files count from the root.
function(zuv_embed_texts room)
    cmake_parse_arguments(EMBED "" "HEADER" "TEXTS" ${ARGN})
    set(output ${CMAKE_CURRENT_BINARY_DIR}/EmbeddedTexts.cpp)
    set(files "")
    set(rows "")
    foreach(row ${EMBED_TEXTS})
        string(REPLACE "=" ";" cells "${row}")
        list(GET cells 1 file)
        list(APPEND files ${CMAKE_SOURCE_DIR}/${file})
        string(REPLACE "=${file}=" "=${CMAKE_SOURCE_DIR}/${file}=" row "${row}")
        list(APPEND rows ${row})
    endforeach()
    add_custom_command(OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} "-DOUTPUT=${output}" "-DHEADER=${EMBED_HEADER}" "-DTEXTS=${rows}"
            -P ${ZUV_EMBED_SCRIPT}
        DEPENDS ${files} ${ZUV_EMBED_SCRIPT}
        COMMENT "Embedding the texts of ${room}"
        VERBATIM)
    target_sources(${room} PRIVATE ${output})
endfunction()
