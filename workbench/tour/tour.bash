# Sourced: everything that the tour consists of but its scenes. Needs project, programs, the folder of the programs, and
# pictures, the folder for the pictures, which is emptied.

wine_run() { "$project/tools/wine-run" "$@"; }
run_program() { wine_run "$programs/$1" "${@:2}"; }
# exec makes $! the program itself: a shell that survives its kill would keep this script's output open.
start_program() { (exec "$project/tools/wine-run" "$programs/$1" "${@:2}") & }
windows_path() { echo "Z:${1//\//\\}"; }
# module_text NAME: a text of the module's string table.
module_text() { sed -n "s/^ *$1 \"\(.*\)\"$/\1/p" "$project/res/Strings.rc" | sed 's/""/"/g'; }

. "$project/workbench/tour/screen.bash"
. "$project/workbench/tour/workbench.bash"
. "$project/workbench/tour/editor.bash"
. "$project/workbench/tour/list.bash"
. "$project/workbench/tour/schedule.bash"

workbench_process=
end_workbench() { [ -z "$workbench_process" ] || kill "$workbench_process" 2>/dev/null || true; }
trap end_workbench EXIT

rm -rf "$pictures"
mkdir -p "$pictures"
