# Runs FUZZER for RUNS inputs from CORPUS on. What it finds goes to FOUND, which is emptied first: a run that started
# from an earlier one's inputs would not be the same again.
file(REMOVE_RECURSE ${FOUND})
file(MAKE_DIRECTORY ${FOUND})
execute_process(
    COMMAND ${FUZZER} -runs=${RUNS} -seed=20010101 -max_len=4096 -timeout=10 -rss_limit_mb=1024
        -artifact_prefix=${FOUND}/ ${FOUND} ${CORPUS}
    COMMAND_ERROR_IS_FATAL ANY)
