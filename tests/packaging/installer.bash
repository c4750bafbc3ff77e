# Sourced after support.bash, in a session, by the tests that install the package for Windows Installer.
# prepare_installer PACKAGES sets, beside what unpack sets:
#   msi        the package; one of the same files for a pre-release, which has none
#   old_msi    a package of version 0.9.0 whose libraries and programs are of that version too
#   target     where they install, as Windows names it, and folder, as this system does
#   activate   a program that creates the class by its identifier, with no module beside it
#   store      the workbench's, below the user's folder, and store_files, all that the user has then
target='C:\Program Files\zdExpirationRules'
folder="$ZD_WINEPREFIX/drive_c/Program Files/zdExpirationRules"
store='AppData/Local/zdExpirationRules Project/Workbench/rules.db'
store_files=("${store%/*/*}" "${store%/*}" "$store")
export SOURCE_DATE_EPOCH=1700000000

prepare_installer() {
  mkdir "$scratch/unpacked" "$scratch/programs"
  cd "$scratch/unpacked" || exit
  unpack "$1"
  msi=$packages/zdExpirationRules-$version-x64.msi
  old_msi=$scratch/old.msi
  activate=$scratch/programs/activate.exe
  if [ ! -e "$msi" ]; then
    msi=$scratch/pre-release.msi
    pack "$module" "$workbench" "${version%%-*}" "$msi"
  fi
  make_old_files
  pack "$old_module" "$old_workbench" 0.9.0 "$old_msi"
  x86_64-w64-mingw32-g++-posix -std=c++20 -static "-I$module/sdk" "$project/tests/packaging/activate.cpp" -o "$activate" \
    -lole32 -loleaut32 -luuid -lversion
  # The test platform's script host registers its own type library when it runs first.
  expect_end 1 windows cscript //nologo "$(windows_path "$module/examples/script/module.vbs")" >/dev/null
}

# module_part MODULE FOLDER: the files of the feature Module.
module_part() {
  mkdir -p "$2"
  cp -R "$1"/{zdExpirationRules.dll,THIRD-PARTY-NOTICES.txt,README.html,CHANGELOG.html,docs} "$2"
}

# pack MODULE WORKBENCH VERSION MSI
pack() {
  rm -rf "$scratch/part"
  module_part "$1" "$scratch/part"
  "$project/packaging/make-msi" "$scratch/part" "$2" "$3" "$4" 2>/dev/null
}

# Other contents, older versions in the version blocks, a page that is no more, and none of today's reports. The
# diagnostics library keeps its version, and has other contents all the same.
make_old_files() {
  local file
  old_module=$scratch/old/module
  old_workbench=$scratch/old/workbench
  mkdir "$scratch/old"
  cp -R "$module" "$old_module"
  cp -R "$workbench" "$old_workbench"
  for file in "$old_module"/*.dll "$old_workbench"/*.{exe,dll,DLL}; do
    perl -0777 -pi -e '$found = s/(\xBD\x04\xEF\xFE.{4}).{16}/$1 . pack "V4", 9, 0, 9, 0/se; END { exit !$found }' "$file" ||
      fail "$file has no version block"
  done
  cp "$workbench/SnagtrapUtil3.0_x64.dll" "$old_workbench"
  echo "other contents" >>"$old_workbench/SnagtrapUtil3.0_x64.dll"
  for file in "$old_module" "$old_workbench"; do
    echo "only in the old version" >"$file/docs/removed-later.html"
    echo "<p>The page of the old version</p>" >"$file/docs/questions.html"
    rm "$file/docs/reports.html"
  done
}

# expect_end CODE COMMAND...: the command ends with the code, of which this system sees eight bits.
expect_end() {
  local wanted=$1 status=0
  shift
  "$@" || status=$?
  [ "$status" = $((wanted & 255)) ] || fail "$* ends with $status instead of $((wanted & 255)), the low bits of $wanted"
}

# install CODE ARGUMENT...: msiexec ends with the code.
install() {
  local code=$1
  shift
  expect_end "$code" windows msiexec "$@" /qn
}

product_code() { msiinfo export "$1" Property | tr -d '\r' | sed -n 's/^ProductCode\t//p'; }

# expect_files WHAT FOLDER: the folder of the programs holds what the given one holds.
expect_files() { diff -r "$2" "$folder" || fail "$1: other files are installed"; }

# The registry of one root as sorted lines "[key] value", each key a line of its own too.
registry() {
  windows regedit /E "$(windows_path "$scratch/exported.reg")" "$1" 2>/dev/null
  iconv -f UTF-16 -t UTF-8 "$scratch/exported.reg" | tr -d '\r' | sed -z 's/\\\n *//g' |
    awk '/^\[/ { key = $0; print key; next } key && NF { print key " " $0 }' | sort
}

# What any program changes in a prefix, and the keys in which Windows Installer keeps its records, when they are empty.
without_noise() {
  grep -vE -e '\\(MuiCache|Explorer|Wine|Services|Enum|Hardware|DirectDraw|Print|Time Zones)(\\|\])' \
    -e '^\[[^]]*\\Installer(\\(Features|Products|UpgradeCodes|UserData(\\S-1-5-18(\\(Components(\\[0-9A-F]{32})?|Products))?)?))?\]$' || true
}

files() { (cd "$ZD_WINEPREFIX/drive_c" && find . | LC_ALL=C sort); }
added() { comm -13 "$1" "$2"; }

# remember_state: what expect_state compares with.
remember_state() {
  registry 'HKEY_LOCAL_MACHINE' | without_noise >"$scratch/machine-before"
  registry 'HKEY_CURRENT_USER' | without_noise >"$scratch/user-before"
  files >"$scratch/files-before"
}

# expect_state WHAT [FILE]...: files and registry are as they were remembered, but for these files below the user's
# folder, the workbench's own settings, and the empty folder in which Windows Installer kept its copies of packages.
expect_state() {
  local what=$1 left
  shift
  files >"$scratch/files"
  expect "$what: files that are missing" '' "$(comm -23 "$scratch/files-before" "$scratch/files")"
  left=$(added "$scratch/files-before" "$scratch/files" | sed -E '\,^\./windows/Installer$,d; s,^\./users/[^/]+/,,')
  expect "$what: files that stay" "$(printf '%s\n' "$@")" "$left"
  registry 'HKEY_LOCAL_MACHINE' | without_noise >"$scratch/machine"
  diff "$scratch/machine-before" "$scratch/machine" || fail "$what: the registry is not as it was"
  registry 'HKEY_CURRENT_USER' | without_noise | grep -vF 'Software\zdExpirationRules Project' >"$scratch/user"
  diff "$scratch/user-before" "$scratch/user" || fail "$what: the user's part of the registry is not as it was"
}

# expect_nothing_else WHAT: outside the folder of the programs and the registered classes, the installation left what
# docs/packages.md says alone. The test platform shows a part of the registry to 32-bit programs once more.
expect_nothing_else() {
  local entry outside
  files >"$scratch/files"
  expect "$1: files that are missing" '' "$(comm -23 "$scratch/files-before" "$scratch/files")"
  entry=$(start_menu_entry)
  outside=$(added "$scratch/files-before" "$scratch/files" |
    grep -vE '^\./(Program Files/zdExpirationRules|users/[^/]+/AppData/Local/zdExpirationRules Project)(/|$)' |
    sed -E 's,^(\./windows/Installer)/[^/]+\.msi$,\1/a copy of the package,')
  expect "$1: files outside its folder" "$(printf '%s\n' ".${entry#"$ZD_WINEPREFIX/drive_c"}" ./windows/Installer "./windows/Installer/a copy of the package")" "$outside"
  registry 'HKEY_LOCAL_MACHINE' | without_noise >"$scratch/machine"
  expect "$1: values that are missing" '' "$(comm -23 "$scratch/machine-before" "$scratch/machine")"
  outside=$(added "$scratch/machine-before" "$scratch/machine" | sed 's/^\[HKEY_LOCAL_MACHINE\\Software\\/[/' |
    grep -vE -e '^\[(Classes|Wow6432Node)\\.' -e '^\[Microsoft\\Windows\\CurrentVersion\\Installer\\.' \
      -e "^\[Microsoft.Windows.CurrentVersion.Uninstall.$(product_code "$msi" | sed 's/[{}]/./g')\]" | LC_ALL=C sort)
  expect "$1: values outside its classes" "[zdExpirationRules Project\\zdExpirationRules]
[zdExpirationRules Project\\zdExpirationRules] \"Folder\"=\"${target//\\/\\\\}\\\\\"
[zdExpirationRules Project]" "$outside"
}

# expect_activation FILE VERSION: a program creates the class by its identifier, from the file.
expect_activation() {
  expect "what the program says" "$1 $2.0"$'\n'"$1" "$(cd "$scratch/programs" && windows ./activate.exe | tr -d '\r')"
}

expect_no_activation() {
  expect "what the program says without a registered class" "CoCreateInstance $1" \
    "$(cd "$scratch/programs" && { windows ./activate.exe || true; } | tr -d '\r')"
}

start_menu_entry() { find "$ZD_WINEPREFIX/drive_c" -path '*Start Menu*' -name 'zdExpirationRules Workbench.lnk'; }
