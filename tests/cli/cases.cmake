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

# style: the window's styled log, in markup so colours can be compared.
set(worked ${KAVOR_TEST_DATA}/cli/worked_example.json)
kavor_cli_case(style_worked_example ARGS style --style "0hr 2g 6b 9b 4r 10" --color markup
               --os-version 17 ${worked})
kavor_cli_case(style_worked_example_ansi ARGS style --style "0hr 2g 6b 9b 4r 10" --color always
               --os-version 17 - STDIN ${worked})
kavor_cli_case(style_sample_default ARGS style --os-version 15 --color never --counts ${sample}
               STDERR_HAS "(12)")
kavor_cli_case(style_sample_basic_plus ARGS style --style-name basic+ --color markup
               --os-version 15 ${sample})
kavor_cli_case(style_sample_everything ARGS style --style "0d 2g 3 11fr 13fg 16 21 25 10T"
               --show-signposts --show-activities --no-limit --counts --color markup
               --os-version 15 ${sample} STDERR_HAS "12")
kavor_cli_case(style_sample_regex ARGS style --filter-name "*failures"
               --filter-text "fail(ed|ure)|error [0-9]+" --color never --os-version 15 ${sample})
kavor_cli_case(style_sample_literal ARGS style --filter-name failures
               --filter-text "fail(ed|ure)|error [0-9]+" --color never --os-version 15 ${sample})
kavor_cli_case(style_sample_typed_filter ARGS style --filter CAFÉ --color never --os-version 15
               --style 10 ${sample})
kavor_cli_case(style_sample_cap ARGS style --cap 2 --show-signposts
               --show-activities --color never --os-version 15 ${sample}
               STDERR_HAS "Showing the first 3 of 12 entries: the entry limit is on")
kavor_cli_case(style_mixed ARGS style --style "0 10 9 1 25" --color never --os-version 15
               STDIN ${KAVOR_TEST_DATA}/cli/mixed.json)
kavor_cli_case(style_version_from_root ARGS style --style "21 16" --color never ${sample}
               ENV KAVOR_SYSTEM_ROOT=${KAVOR_TEST_DATA}/roots/v10.13)
kavor_cli_case(style_bad_color ARGS style --color sometimes ${sample} EXIT 64
               STDERR_HAS "--color wants")
kavor_cli_case(style_filter_conflict ARGS style --filter x --filter-name y --filter-text z
               ${sample} EXIT 64 STDERR_HAS "--filter goes alone")
kavor_cli_case(style_filter_half ARGS style --filter-name y ${sample} EXIT 64
               STDERR_HAS "go together")
kavor_cli_case(style_bad_cap ARGS style --cap 0 ${sample} EXIT 64 STDERR_HAS "--cap")
kavor_cli_case(style_unknown_name ARGS style --style-name fancy --os-version 15 ${sample} EXIT 64
               STDERR_HAS "basic+, regular")

# csv
kavor_cli_case(csv_sample ARGS csv --os-version 15 ${sample})
kavor_cli_case(csv_sample_13_stdin ARGS csv --os-version=13 - STDIN ${sample})
kavor_cli_case(csv_sample_12_other_types ARGS csv --os-version 12 --hide-log-entries
               --show-signposts --show-activities ${sample})
kavor_cli_case(csv_mixed ARGS csv --os-version 15 STDIN ${KAVOR_TEST_DATA}/cli/mixed.json)
kavor_cli_case(csv_empty_array ARGS csv --os-version 15 ${KAVOR_TEST_DATA}/cli/csv_empty.json)
kavor_cli_case(csv_version_from_root ARGS csv --show-signposts ${sample}
               ENV KAVOR_SYSTEM_ROOT=${KAVOR_TEST_DATA}/roots/v14)
kavor_cli_case(csv_help ARGS csv --help)

# query: the form as the log tool's arguments; --base is fixed and the zone is UTC.
set(base --base "2020-05-01 10:00:00")
kavor_cli_case(query_live_error_row ARGS query ${base} --predicate-name error --unit min
               --os-version 15)
kavor_cli_case(query_archive_period_0 ARGS query ${base}
               --source "/Users/me/My Logs/crash.logarchive" --predicate-name none --no-info --debug --period 0 --unit day --os-version 15)
kavor_cli_case(query_file_own_row ARGS query ${base} --source /tmp/0000000000000001.tracev3
               --predicate-name mine --predicate-text "process == \"a b\"" --period 3 --unit hour
               --os-version 12)
kavor_cli_case(query_typed_none ARGS query ${base} --predicate none --no-signposts --os-version 15)
kavor_cli_case(query_version_from_root ARGS query ${base} --period=+7.9
               ENV KAVOR_SYSTEM_ROOT=${KAVOR_TEST_DATA}/roots/v10.13)
kavor_cli_case(query_clamped ARGS query ${base} --period 5000 --unit min --os-version 15
               STDERR_HAS "field shows \"1000\"")
kavor_cli_case(query_unreadable_period ARGS query ${base} --period 1e3 --os-version 15
               STDERR_HAS "is not a number: the period is -10")
kavor_cli_case(query_help ARGS query --help)
kavor_cli_case(query_predicate_conflict ARGS query --predicate x --predicate-name y EXIT 64
               STDERR_HAS "--predicate goes alone")
kavor_cli_case(query_predicate_text_alone ARGS query --predicate-text x EXIT 64
               STDERR_HAS "needs --predicate-name")
kavor_cli_case(query_unknown_predicate_name ARGS query --predicate-name fancy EXIT 64
               STDERR_HAS "error, ===, kernel")
kavor_cli_case(query_bad_unit ARGS query --unit week EXIT 64 STDERR_HAS "--unit wants")
kavor_cli_case(query_bad_base ARGS query --base 2020-05-01 EXIT 64 STDERR_HAS "--base wants")
kavor_cli_case(query_empty_source ARGS query --source= EXIT 64 STDERR_HAS "--source wants")

# chart: bins of a time window in local time (UTC here, unless the case says otherwise).
set(minute --start "2020-05-01 08:41:00" --end "2020-05-01 08:42:00")
kavor_cli_case(chart_sample ARGS chart ${minute} ${sample})
kavor_cli_case(chart_sample_subsystem ARGS chart ${minute} --bins 19
               --subsystem com.apple.TimeMachine ${sample})
kavor_cli_case(chart_sample_kernel_stdin ARGS chart ${minute} --bins 191 --subsystem *kernel*
               - STDIN ${sample})
kavor_cli_case(chart_sample_paris ARGS chart --start "2020-05-01 10:41:05"
               --end "2020-05-01 10:41:15" --bins 20 ${sample} ENV TZ=Europe/Paris)
kavor_cli_case(chart_list_subsystems ARGS chart --list-subsystems ${sample})
kavor_cli_case(chart_mixed ARGS chart ${minute} --bins 19 --subsystem [nil]
               STDIN ${KAVOR_TEST_DATA}/cli/mixed.json)
kavor_cli_case(chart_mixed_list ARGS chart --list-subsystems ${KAVOR_TEST_DATA}/cli/mixed.json)
kavor_cli_case(chart_help ARGS chart --help)
kavor_cli_case(chart_unknown_subsystem ARGS chart ${minute} --subsystem com.apple.none ${sample}
               EXIT 64 STDERR_HAS "no entry has the subsystem \"com.apple.none\"")
kavor_cli_case(chart_too_few_bins ARGS chart ${minute} --bins 18 ${sample} EXIT 64
               STDERR_HAS "--bins wants a number from 19 to 191")
kavor_cli_case(chart_no_start ARGS chart --end "2020-05-01 08:42:00" ${sample} EXIT 64
               STDERR_HAS "--start is needed")
kavor_cli_case(chart_bad_end ARGS chart --start "2020-05-01 08:41:00" --end 08:42 ${sample}
               EXIT 64 STDERR_HAS "--end wants a time as yyyy-MM-dd HH:mm:ss, not \"08:42\"")
kavor_cli_case(query_archive_option ARGS query ${base} --archive "/tmp/with space 'q'/x"
               --predicate "eventMessage CONTAINS[c] \"it's\"" --os-version 15)
kavor_cli_case(query_file_option ARGS query ${base} --file /tmp/x.logarchive --os-version 12)
kavor_cli_case(query_two_sources ARGS query --archive a --file b EXIT 64
               STDERR_HAS "exclude each other")

# A filter expression too slow for a message: the entry is left out, and standard error says so.
kavor_cli_case(style_slow_filter ARGS style --style 10 --color never --filter-name "*slow"
               --filter-text "(a+)+$" --os-version 17 ${KAVOR_TEST_DATA}/cli/slow_filter.json
               STDERR_HAS "too slow for some messages: 1 entry is left out")

# archive: the group's name alone says which tools it has.
kavor_cli_case(archive_alone ARGS archive EXIT 64 STDERR_HAS "takes one of: catalogue, stats, build")
kavor_cli_case(archive_build_needs_two ARGS archive build ${KAVOR_TEST_DATA} EXIT 64
               STDERR_HAS "give the log store and the new archive")

# check: the report of a system root that has none of the log store.
kavor_cli_case(check_missing_root ARGS check ENV KAVOR_SYSTEM_ROOT=${KAVOR_TEST_DATA}/roots/missing)
kavor_cli_case(check_help ARGS check --help)

# lists: the stored named lists as a lists file. Settings are read from a fixture, or from an
# empty folder of the build tree, where the factory lists stand in.
kavor_cli_case(lists_alone ARGS lists EXIT 64 STDERR_HAS "takes one of: export, import")
kavor_cli_case(lists_export_stored ARGS lists export -
               ENV XDG_CONFIG_HOME=${KAVOR_TEST_DATA}/prefs/config)
kavor_cli_case(lists_export_factory_12 ARGS lists export --os-version 12 -
               ENV XDG_CONFIG_HOME=${CMAKE_CURRENT_BINARY_DIR}/xdg-config-none)
kavor_cli_case(lists_import_not_a_plist ARGS lists import --os-version 15
               ${KAVOR_TEST_DATA}/cli/not_array.json
               EXIT 1 STDERR_HAS "not_array.json\": it is not a property list")
kavor_cli_case(lists_import_needs_a_file ARGS lists import --merge EXIT 64
               STDERR_HAS "give the file to import")
kavor_cli_case(lists_import_help ARGS lists import --help)
kavor_cli_case(lists_export_unwritable ARGS lists export --os-version 15
               ${KAVOR_TEST_DATA}/prefs/missing/lists.plist
               EXIT 1 STDERR_HAS "Couldn't save exported file. (cannot open")
