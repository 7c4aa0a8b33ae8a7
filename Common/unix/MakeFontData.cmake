# Writes the tables behind mdFontData.cpp from the published metrics of the base fonts.
#   cmake -D DATA=<folder of the tables> -D OUT=<file to write> -P MakeFontData.cmake
# One line a font: {"Name", {the nine metrics}, {256 widths}}, in the order of the columns of pdfdoc-widths.tsv.

set(metrics bbox_left bbox_bottom bbox_right bbox_top ascender descender cap_height x_height italic_angle)

file(STRINGS ${DATA}/pdfdoc-widths.tsv lines)
list(POP_FRONT lines header)
string(REPLACE "\t" ";" fonts "${header}")
list(POP_FRONT fonts)

foreach(line IN LISTS lines)
  string(REPLACE "\t" ";" row "${line}")
  list(POP_FRONT row)
  foreach(font width IN ZIP_LISTS fonts row)
    string(APPEND widths_${font} "${width},")
  endforeach()
endforeach()

file(STRINGS ${DATA}/base14-metrics.tsv lines REGEX "\tmetric\t")
foreach(line IN LISTS lines)
  string(REPLACE "\t" ";" row "${line}")
  list(GET row 0 font)
  list(GET row 2 name)
  list(GET row 3 value)
  # The one metric with a fraction is told in tenths.
  if(name STREQUAL "italic_angle")
    if(NOT value MATCHES "\\.")
      string(APPEND value ".0")
    endif()
    string(REPLACE "." "" value "${value}")
    string(REGEX REPLACE "^(-?)0+([0-9])" "\\1\\2" value "${value}")
  elseif(value STREQUAL "-")
    set(value 0)
  endif()
  set(${name}_${font} ${value})
endforeach()

set(text "")
foreach(font IN LISTS fonts)
  set(values "")
  foreach(name IN LISTS metrics)
    string(APPEND values "${${name}_${font}},")
  endforeach()
  string(APPEND text "{\"${font}\", {${values}}, {${widths_${font}}}},\n")
endforeach()
file(WRITE ${OUT} "${text}")
