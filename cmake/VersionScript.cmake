# Turns the list of exports (EXPORTS, one name a line) into a linker version script (OUTPUT).
file(STRINGS ${EXPORTS} names)
list(JOIN names ";\n        " body)
file(WRITE ${OUTPUT} "{\n    global:\n        ${body};\n    local:\n        *;\n};\n")
