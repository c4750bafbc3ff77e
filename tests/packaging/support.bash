# Sourced by the tests of the packages.
. "$(dirname "${BASH_SOURCE[0]}")/../support/script.bash"

# unpack PACKAGES: unpacks the zips into the current folder, and sets packages, version, and the folders of their contents:
# module, workbench and symbols.
unpack() {
  local zip
  packages=$(realpath "$1")
  zip=$(cd "$packages" && ls zdExpirationRules-[0-9]*-x64.zip)
  version=${zip#zdExpirationRules-}
  version=${version%-x64.zip}
  for zip in "$packages"/*.zip; do unzip -q "$zip"; done
  module=$PWD/zdExpirationRules-$version-x64
  workbench=$PWD/zdExpirationRules-workbench-$version-x64
  symbols=$PWD/zdExpirationRules-symbols-$version-x64
}
