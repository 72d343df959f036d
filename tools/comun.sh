# shellcheck shell=bash
# What every command of this folder shares. Sourced, never run: it puts the caller in the project's own folder.
set -euo pipefail
raiz=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
cd "$raiz"

di() { printf '%s\n' "$*"; }
falla() {
    printf '%s\n' "$*" >&2
    exit 1
}

# Announces a stage; the time of the one before is printed when the next begins or when `fin_de_etapa` is called.
etapa_nombre=''
etapa() {
    fin_de_etapa
    etapa_nombre=$1
    etapa_inicio=$SECONDS
    printf '\n== %s\n' "$etapa_nombre"
}
fin_de_etapa() {
    [ -z "$etapa_nombre" ] || printf '== %s: %s s\n' "$etapa_nombre" "$((SECONDS - etapa_inicio))"
    etapa_nombre=''
}

# Configures a preset only where its tree is not there yet: ninja runs CMake again by itself when a list changes.
configura() {
    [ -e "build/$1/build.ninja" ] || cmake --preset "$1"
}
