# Turns the font data into the C++ tables that BaseTool.cpp and TextConvert.cpp include.
# Run as: cmake -DDATA=<folder of the .tsv files> -DOUT=<folder to write to> -P MakeBaseToolTables.cmake
# SPDX-License-Identifier: MIT
cmake_minimum_required(VERSION 3.25)

file(STRINGS "${DATA}/pdfdoc-widths.tsv" width_lines)
list(POP_FRONT width_lines header)
string(REPLACE "\t" ";" fonts "${header}")
list(POP_FRONT fonts)

# A column of widths for each font, in the order of the header.
foreach(line IN LISTS width_lines)
  string(REPLACE "\t" ";" cells "${line}")
  list(POP_FRONT cells code)
  foreach(font width IN ZIP_LISTS fonts cells)
    string(APPEND widths_${font} "${width},")
  endforeach()
endforeach()

file(STRINGS "${DATA}/base14-metrics.tsv" metric_lines REGEX "\tmetric\t")
foreach(line IN LISTS metric_lines)
  string(REPLACE "\t" ";" cells "${line}")
  list(GET cells 0 font)
  list(GET cells 2 name)
  list(GET cells 3 ${font}_${name})
endforeach()

set(text "// Made from data/*.tsv at build time; do not edit.\n\nstatic const BaseFont s_baseFonts[] = {\n")
foreach(font IN LISTS fonts)
  string(APPEND text "{\"${font}\", {${${font}_bbox_left}, ${${font}_bbox_bottom}, ${${font}_bbox_right}, "
    "${${font}_bbox_top}, ${${font}_ascender}, ${${font}_descender}},\n {${widths_${font}}}},\n")
endforeach()
string(APPEND text "};\n")
file(WRITE "${OUT}/BaseFonts.inc" "${text}")

# Codes below 24 without a meaning stand for the Unicode value of the same number.
file(STRINGS "${DATA}/pdfdoc-encoding.tsv" code_lines)
list(POP_FRONT code_lines)
set(forward "")
set(pairs "")
foreach(line IN LISTS code_lines)
  string(REPLACE "\t" ";" cells "${line}")
  list(GET cells 0 code)
  list(GET cells 1 hex)
  list(GET cells 2 unicode)
  if(unicode STREQUAL "-" AND code LESS 24)
    string(REPLACE "0x" "U+00" unicode "${hex}")
  endif()
  if(unicode STREQUAL "-")
    string(APPEND forward "0xFFFF,")
  else()
    string(REPLACE "U+" "" unicode "${unicode}")
    string(APPEND forward "0x${unicode},")
    list(APPEND pairs "${unicode}|${code}")
  endif()
endforeach()

# Four hexadecimal digits sort as text as they do as numbers.
list(SORT pairs)
set(backward "")
foreach(pair IN LISTS pairs)
  string(REPLACE "|" "," pair "${pair}")
  string(APPEND backward "{0x${pair}},\n")
endforeach()
file(WRITE "${OUT}/PDFDocCodes.inc" "// Made from data/*.tsv at build time; do not edit.\n\n"
  "static const std::uint16_t s_pdfDocToUnicode[256] = {${forward}};\n\n"
  "static const PDFDocPair s_unicodeToPDFDoc[] = {\n${backward}};\n")
