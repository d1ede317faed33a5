# Cases are added by the commands they test.
set(sample ${PROJECT_SOURCE_DIR}/resources/samples/sample.json)

# The command line itself.
kavor_cli_case(help ARGS --help)
kavor_cli_case(version ARGS --version)
kavor_cli_case(no_arguments EXIT 64 STDERR_HAS "Usage: kavor-cli COMMAND")
kavor_cli_case(unknown_command ARGS frobnicate EXIT 64 STDERR_HAS "unknown command")
kavor_cli_case(unknown_option ARGS entries --colour EXIT 64 STDERR_HAS "unknown option")
kavor_cli_case(extra_operand ARGS entries a.json b.json EXIT 64 STDERR_HAS "unexpected argument")

# fields: the table changes at 13 and at 14; the version can come from the system root.
kavor_cli_case(fields_12 ARGS fields --os-version 12)
kavor_cli_case(fields_13 ARGS fields --os-version=13)
kavor_cli_case(fields_15 ARGS fields --os-version 15)
kavor_cli_case(fields_from_root_14 ARGS fields ENV KAVOR_SYSTEM_ROOT=${KAVOR_TEST_DATA}/roots/v14)
kavor_cli_case(fields_from_root_10_13 ARGS fields
               ENV KAVOR_SYSTEM_ROOT=${KAVOR_TEST_DATA}/roots/v10.13)
kavor_cli_case(fields_no_root ARGS fields EXIT 1 STDERR_HAS "--os-version"
               ENV KAVOR_SYSTEM_ROOT=${KAVOR_TEST_DATA}/roots/missing)
kavor_cli_case(fields_bad_os_version ARGS fields --os-version 0 EXIT 64 STDERR_HAS "not \"0\"")
kavor_cli_case(fields_missing_value ARGS fields --os-version EXIT 64 STDERR_HAS "needs a value")
kavor_cli_case(fields_help ARGS fields --help)

# entries
kavor_cli_case(entries_sample ARGS entries ${sample})
kavor_cli_case(entries_count_stdin ARGS entries --count - STDIN ${sample})
kavor_cli_case(entries_mixed ARGS entries STDIN ${KAVOR_TEST_DATA}/cli/mixed.json)
kavor_cli_case(entries_not_array ARGS entries ${KAVOR_TEST_DATA}/cli/not_array.json EXIT 1
               STDERR_HAS "not_array.json: the output is not a JSON array")
kavor_cli_case(entries_empty ARGS entries STDIN /dev/null EXIT 1 STDERR_HAS
               "standard input: the output is empty")
kavor_cli_case(entries_missing_file ARGS entries ${KAVOR_TEST_DATA}/cli/none.json EXIT 1
               STDERR_HAS "none.json: No such file or directory")
