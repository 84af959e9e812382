# cmake -D OUTPUT=file.cpp -D SCRIPTS=a.js;b.js -P EmbedScripts.cmake
# Writes the definitions of the page scripts that Platform/Engine/Scripts/PageScripts.h declares. A script is handed to
# the engine as an expression: its last semicolon, which formatters ask for, is taken off.

set(text "// Made by the build from the scripts in Platform/Engine/Scripts.\n\n")
string(APPEND text "#include \"Platform/Engine/Scripts/PageScripts.h\"\n\nnamespace qrv::engine {\n")
foreach(file ${SCRIPTS})
    get_filename_component(name ${file} NAME_WE)
    file(READ ${file} source)
    string(REGEX REPLACE ";[ \n]*$" "" source "${source}")
    string(APPEND text "\nconst PageScript scripts::${name}{\"${name}.js\", R\"js(${source}"
        "\n//# sourceURL=web2pdf/${name}.js\n)js\"};\n")
endforeach()
string(APPEND text "\n} // namespace qrv::engine\n")
file(WRITE ${OUTPUT} "${text}")
