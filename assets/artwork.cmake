# Every drawing of artwork/ as pictures at one, two and three times its size in points.
set(pictures ${resources}/artwork)
set(fat ${CMAKE_CURRENT_BINARY_DIR}/artwork)
file(MAKE_DIRECTORY ${pictures} ${fat})
file(GLOB drawings CONFIGURE_DEPENDS artwork/*.svg)

# Large keys are the keys' own drawings on a wider sheet: all in them is placed by hundredths of it.
function(widen name width wider)
  set(drawing ${CMAKE_CURRENT_SOURCE_DIR}/artwork/${name}.svg)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${drawing})
  file(READ ${drawing} text)
  string(REPLACE "width=\"${width}\"" "width=\"${wider}\"" text "${text}")
  string(REPLACE "viewBox=\"0 0 ${width} " "viewBox=\"0 0 ${wider} " text "${text}")
  file(CONFIGURE OUTPUT ${fat}/${name}-fat.svg CONTENT "${text}" @ONLY)
  list(APPEND drawings ${fat}/${name}-fat.svg)
  set(drawings ${drawings} PARENT_SCOPE)
endfunction()
foreach(state up down)
  widen(white-note-${state} 51 102)
  widen(black-note-${state} 64 115)
endforeach()

find_program(RSVG_CONVERT rsvg-convert REQUIRED)
foreach(drawing ${drawings})
  get_filename_component(name ${drawing} NAME_WE)
  set(picture ${pictures}/${name})
  add_custom_command(VERBATIM DEPENDS ${drawing} COMMENT "Drawing ${name}.png"
    OUTPUT ${picture}.png ${picture}@2x.png ${picture}@3x.png
    COMMAND ${RSVG_CONVERT} -z 1 -o ${picture}.png ${drawing}
    COMMAND ${RSVG_CONVERT} -z 2 -o ${picture}@2x.png ${drawing}
    COMMAND ${RSVG_CONVERT} -z 3 -o ${picture}@3x.png ${drawing})
  list(APPEND drawn ${picture}.png)
endforeach()
add_custom_target(artwork DEPENDS ${drawn})
add_dependencies(views artwork)
