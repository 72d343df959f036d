#!/usr/bin/env python3
"""Unpacks a backup, and writes its data, on disks of many sizes that fill up: disco-lleno.py ENGINE EXTRACTORS BACKUPS CASES

Each disk is a tmpfs in a mount namespace of its own, small in bytes or in files; run it by
`unshare --mount --map-root-user`. What stands under a final name must be whole, the engine must say why it ended, and
nothing may be left that only looks finished.
"""
import hashlib
import json
import os
import pathlib
import shutil
import subprocess
import sys

SEGUNDOS = 60


def arbol(carpeta: pathlib.Path) -> dict[str, str]:
    return {
        str(f.relative_to(carpeta)): hashlib.sha1(f.read_bytes()).hexdigest()
        for f in carpeta.rglob("*")
        if f.is_file() and not f.is_symlink()
    }


def en_disco(disco: pathlib.Path, opciones: str, orden: list[str]) -> tuple[subprocess.CompletedProcess, dict[str, str]]:
    """Runs a command whose last word, the result folder, is to be on a disk with these mount options."""
    subprocess.run(["mount", "-t", "tmpfs", "-o", opciones, "tmpfs", disco], check=True)
    try:
        fin = subprocess.run([*orden, disco / "a"], capture_output=True, text=True, timeout=SEGUNDOS, check=False)
        quedo = arbol(disco / "a") if (disco / "a").exists() else {}
    finally:
        subprocess.run(["umount", disco], check=True)
    return fin, quedo


def revisar(nombre: str, opciones: str, fin: subprocess.CompletedProcess, quedo: dict, entero: dict) -> bool:
    """Whether this ending is in order; says so when not. Answers through the exit code whether all was written."""
    enteros = {f: s for f, s in quedo.items() if ".vellora-" not in f}
    malos = [f for f, suma in enteros.items() if entero.get(f) != suma]
    # A summary tells of what it found, so that one of a disk without room may tell of less.
    malos = [f for f in malos if not f.endswith("RESUMEN.txt")]
    if fin.returncode < 0 or malos:
        print(f"{nombre}, {opciones}: terminó con {fin.returncode}; a medias: {malos[:5]}")
        return False
    return True


def main() -> int:
    motor, extractores, copias, casos = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3]), int(sys.argv[4])
    base = copias.parent / "disco-lleno"
    shutil.rmtree(base, ignore_errors=True)
    (base / "disco").mkdir(parents=True)
    entorno = {k: v for k, v in os.environ.items() if k != "DBUS_SESSION_BUS_ADDRESS"}
    os.environ.clear()
    os.environ.update(entorno)
    trabajos = {}
    udid = next(p.name for p in copias.iterdir() if p.is_dir())
    trabajos["motor"] = [motor, "extraer", udid, str(copias)]
    trabajos["extractores"] = [extractores, str(base / "motor")]
    mal = llenos = 0
    for nombre, orden in trabajos.items():
        fin = subprocess.run([*orden, base / nombre], capture_output=True, text=True, timeout=SEGUNDOS, check=False)
        entero = arbol(base / nombre)
        if fin.returncode != 0 or len(entero) < 15:
            print(f"{nombre}: ni con el disco vacío: {fin.stdout}{fin.stderr}")
            return 1
        bytes_ = sum((base / nombre / f).stat().st_size for f in entero)
        for caso in range(casos):
            parte = (caso // 2 + 1) / (casos // 2 + 1)
            size = f"size={max(4096, int(bytes_ * 1.4 * parte))}"
            nodos = f"size=64m,nr_inodes={3 + int(len(entero) * 1.6 * parte)}"
            opciones = size if caso % 2 else nodos
            fin, quedo = en_disco(base / "disco", opciones, orden)
            mal += not revisar(nombre, opciones, fin, quedo, entero)
            faltan = set(entero) - set(quedo)
            llenos += bool(faltan)
            if nombre == "motor" and faltan and fin.returncode == 0:
                avisos = [json.loads(linea) for linea in fin.stdout.splitlines() if linea.startswith("{")]
                if not any(a.get("tipo") == "fin" and a.get("fallidos", 0) for a in avisos):
                    print(f"{nombre}, {opciones}: faltan {len(faltan)} y no lo dice")
                    mal += 1
    print(f"Discos que se llenan: {len(trabajos) * casos} casos, {llenos} sin sitio para todo, {mal} mal")
    return 1 if mal or not llenos else 0


if __name__ == "__main__":
    sys.exit(main())
