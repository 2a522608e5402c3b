#!/usr/bin/env bash
# Installs a build tree into a scratch prefix and checks what lands there: the two programs,
# stripped, under bin/; every file a desktop, a manual and systemd look for; nothing from the
# tests or benchmarks; and that the desktop entry, the metainfo and the manual pages pass their
# own tools' checks (each skipped, saying so, where its tool is not installed).
# Usage: scripts/check-install.sh BUILD_DIR
set -euo pipefail
build="$1"
prefix="$(mktemp -d)"
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" --strip >/dev/null
status=0

# Every file that must land, relative to the prefix; one line each.
expected=(
    bin/wakeline
    bin/wakeline-tool
    share/wakeline/Wakeline.txt
    share/wakeline/chime.wav
    share/applications/wakeline.desktop
    share/icons/hicolor/scalable/apps/wakeline.svg
    share/metainfo/org.wakeline.Wakeline.metainfo.xml
    share/man/man1/wakeline.1
    share/man/man1/wakeline-tool.1
    lib/systemd/user/wakeline-logger.service
)
for file in "${expected[@]}"; do
    if [ ! -f "$prefix/$file" ]; then
        echo "missing: $file"
        status=1
    fi
done

for program in wakeline wakeline-tool; do
    if [ ! -x "$prefix/bin/$program" ]; then
        echo "not executable: bin/$program"
        status=1
    elif readelf -S "$prefix/bin/$program" | grep -q '\.debug_info'; then
        echo "not stripped: bin/$program"
        status=1
    fi
done

unexpected="$(cd "$prefix" && find . -type f | sed 's|^\./||' | while read -r file; do
    case "$file" in
        share/wakeline/*) ;;
        *) printf '%s\n' "${expected[@]}" | grep -qxF "$file" || echo "$file" ;;
    esac
done)"
if [ -n "$unexpected" ]; then
    echo "installed but not part of the program:"
    echo "$unexpected"
    status=1
fi

# The tools' own checks. Each says what it found wrong; a missing tool is a skip, not a pass.
if command -v desktop-file-validate >/dev/null; then
    desktop-file-validate "$prefix/share/applications/wakeline.desktop" || status=1
else
    echo "skipped: desktop-file-validate is not installed (desktop-file-utils)"
fi
if command -v appstreamcli >/dev/null; then
    appstreamcli validate --no-net "$prefix/share/metainfo/org.wakeline.Wakeline.metainfo.xml" \
        >/dev/null || {
        appstreamcli validate --no-net "$prefix/share/metainfo/org.wakeline.Wakeline.metainfo.xml"
        status=1
    }
else
    echo "skipped: appstreamcli is not installed (appstream)"
fi
if command -v man >/dev/null && command -v groff >/dev/null; then
    for page in "$prefix"/share/man/man1/*.1; do
        # Rendered as a reader sees it; any troff warning (an unknown macro or character) fails.
        warnings="$(MANWIDTH=80 man --warnings -E UTF-8 -l "$page" 2>&1 >/dev/null)"
        if [ -n "$warnings" ]; then
            echo "man -l ${page#"$prefix"/}:"
            echo "$warnings"
            status=1
        fi
    done
else
    echo "skipped: man -l (man-db and groff-base are not installed)"
fi
unit="$prefix/lib/systemd/user/wakeline-logger.service"
if [ -f "$unit" ] && ! grep -qE '^ExecStart=/[^ ]*/wakeline --headless ' "$unit"; then
    echo "the logger's unit does not run wakeline --headless by its full path"
    status=1
fi

[ "$status" -eq 0 ] && echo "installed: $(cd "$prefix" && find . -type f | sort | tr '\n' ' ')"
exit "$status"
