# Writes a stand-in for one CMPI header of a distribution: ours, without the switch, with the short
# include paths that such headers use, and with a mark by which a test knows it.
file(READ "${INPUT}" text)
string(REPLACE "PYL_SYSTEM_CMPI" "PYL_NEVER_DEFINED" text "${text}")
string(REPLACE "#include \"cmpi/" "#include \"" text "${text}")
get_filename_component(name "${INPUT}" NAME_WE)
string(TOUPPER "PYL_STAND_IN_${name}" mark)
file(WRITE "${OUTPUT}" "${text}\n#define ${mark} 1\n")
