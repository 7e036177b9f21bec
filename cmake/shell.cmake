# The manual page and the scripts that complete command lines. The program writes them.
set(shell ${PROJECT_BINARY_DIR}/shell)
find_program(GZIP gzip REQUIRED)
file(MAKE_DIRECTORY ${shell})
add_custom_command(OUTPUT ${shell}/zentrix.1.gz ${shell}/zentrix ${shell}/_zentrix
    COMMAND zentrix_program man > ${shell}/zentrix.1
    COMMAND ${GZIP} -9nf ${shell}/zentrix.1
    COMMAND zentrix_program completion bash > ${shell}/zentrix
    COMMAND zentrix_program completion zsh > ${shell}/_zentrix
    DEPENDS zentrix_program)
add_custom_target(zentrix_shell ALL DEPENDS ${shell}/zentrix.1.gz)
install(FILES ${shell}/zentrix.1.gz DESTINATION share/man/man1 COMPONENT program)
install(FILES ${shell}/zentrix DESTINATION share/bash-completion/completions COMPONENT program)
install(FILES ${shell}/_zentrix DESTINATION share/zsh/vendor-completions COMPONENT program)
