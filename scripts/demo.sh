#!/usr/bin/env bash
# The main job on the bundled demo installation (a scratch copy of testdata/demo):
#   1. nvtool: the bundled text file into company HARBOUR, HARBOUR out in each record type,
#      the comma file back into HARBOUR2, each other product's demo source into a company
#      of its own, `nvtool check` on every company made, and the counts; HARBOUR out
#      through a stored export definition;
#   2. nvimport as the main fixed-assets program starts it: a "/pid:" token and the mode
#      word on the command line, the ten parameter lines on standard input. With a display
#      the import window opens; without one the same start runs in scripted mode
#      (testdata/demo/demo-script.txt, every importer once) and prints the transcript.
#   bash scripts/demo.sh [IMPORT|EXPORT]
set -euo pipefail
cd "$(dirname "$0")/.."
mode=${1:-IMPORT}
bash scripts/setup.sh
cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc)" --target nvimport nvtool

# A scratch copy, so that what start-up writes (TERM.1) never touches the repository.
install_dir=$(mktemp -d /tmp/nv-demo.XXXXXX)
cp -r testdata/demo/. "$install_dir/"
cp testdata/bna/EXAMPLE.IMP "$install_dir/"
token=$$
handoff() {
  printf '%s\n' "NORVANE Fixed Assets" "" "" "$token" "" "" "" "0" "" "0"
}

nvtool=build/default/tools/nvtool
data="$install_dir"
# The count line of an import's transcript.
copied() { sed -n 's/^message title="Done" text="\([0-9]* assets copied.\)".*/\1/p' "$1"; }

echo "---- nvtool: the whole-company text file out and back in ----"
"$nvtool" import text testdata/dbs/harbour.dbs "$data" HARBOUR --type tab >"$data/nvtool-import-HARBOUR.txt"
echo "import text testdata/dbs/harbour.dbs into HARBOUR: $(copied "$data/nvtool-import-HARBOUR.txt")"
"$nvtool" check "$data" HARBOUR
for type in tab comma fixed fixed-nolines; do
  printf 'export-text HARBOUR --type %-14s ' "$type"
  "$nvtool" export-text "$data" HARBOUR "$data/HARBOUR-$type.txt" --type "$type"
done
"$nvtool" import text "$data/HARBOUR-comma.txt" "$data" HARBOUR2 --type comma >"$data/nvtool-import-HARBOUR2.txt"
echo "import text HARBOUR-comma.txt into HARBOUR2: $(copied "$data/nvtool-import-HARBOUR2.txt")"
"$nvtool" check "$data" HARBOUR2

echo "---- nvtool: an export definition ----"
printf '%s\r\n' '[Register]' 'Include Headings=Yes' 'Filename=HARBOUR-register.txt' 'Select Assets=No' \
  '0=Asset No.,42,ADCN,Asset' '1=Desc.,42,ADCN,Description' '2=Cost,42,ADCN,Cost' \
  '3=Useful Life,84,ADCN,Tax life' '4=Ending Allwd Dpr,84,ADCN,Tax depreciation' >"$data/HARBOUR.EXP"
"$nvtool" export "$data" HARBOUR Register --replace

echo "---- nvtool: each product's demo source ----"
for run in \
    "DEMOPC|pcfas testdata/pcfas/LAKESIDE/COMPANY1.FAS|--company testdata/pcfas/lakeside-year.json --match 202=103" \
    "FASTOOL|fas1000 testdata/fas1000/ACME/COMPANY.SAF|--match 202=108,203=104" \
    "NWTOOL|aicpa testdata/aicpa/NWTOOL-2024.AST|" \
    "MBADEMO|mba testdata/mba/mbademo.txt|--company testdata/mba/mbademo-company.json" \
    "PIER|faswin testdata/faswin/PIER/PIERcmpy.wfa|" \
    "GLEN|faswin testdata/faswin/GLEN/GLENcmpy.wfa|--company testdata/faswin/GLEN/glen-year.json --delete-disposed yes" \
    "GLENCSV|faswin testdata/faswin/csv/glen-tax.csv|--company testdata/faswin/csv/glen-company.json --schedule T --match 202=109,203=111" \
    "GLENCSV|faswin testdata/faswin/csv/glen-book.csv|--existing add --schedule B --match 202=109,203=111"; do
  IFS='|' read -r number source options <<<"$run"
  # shellcheck disable=SC2086
  "$nvtool" import $source "$data" "$number" $options >"$data/nvtool-import-$number.txt" 2>&1 ||
    { cat "$data/nvtool-import-$number.txt"; exit 1; }
  printf '%-8s %-50s %s\n' "$number" "$source" \
    "$(copied "$data/nvtool-import-$number.txt")"
  "$nvtool" check "$data" "$number"
done
# BNA converts by an import profile, which a run may write back to: a copy of the example.
cp testdata/bna/EXAMPLE.IMP "$data/EXAMPLE.IMP"
"$nvtool" import bna testdata/bna/FIXEDASSETS.CSV "$data" BNADEMO --profile "$data/EXAMPLE.IMP" \
  --today 11/24/2026 >"$data/nvtool-import-BNADEMO.txt" 2>&1 ||
  { cat "$data/nvtool-import-BNADEMO.txt"; exit 1; }
printf '%-8s %-50s %s\n' BNADEMO "bna testdata/bna/FIXEDASSETS.CSV" \
  "$(sed -n 's/^message title="Note" text="\([0-9]* assets imported.\)".*/\1/p' "$data/nvtool-import-BNADEMO.txt")"
"$nvtool" check "$data" BNADEMO
echo "(transcripts and import reports: $data/nvtool-import-*.txt, $data/import-reports/)"

export NV_INSTALL_DIR="$install_dir"
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  handoff | build/default/gui/nvimport "/pid:$token" "$mode"
else
  echo "No display: running the same start in scripted mode."
  set +e
  handoff | NV_UI_SCRIPT="$install_dir/demo-script.txt" NV_UI_TRANSCRIPT="$install_dir/transcript.txt" \
    build/default/gui/nvimport "/pid:$token" "$mode"
  code=$?
  set -e
  echo "---- transcript ($install_dir/transcript.txt) ----"
  cat "$install_dir/transcript.txt"
  echo "---- exit code $code; TERM.1 written by start-up: ----"
  cat "$install_dir/TERM.1"
  exit "$code"
fi
