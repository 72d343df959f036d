#!/usr/bin/env python3
"""First inputs for the fuzz programs: semillas.py CLEAR_BACKUP ENCRYPTED_BACKUP DESTINATION.

A folder for each program, filled from two backups of the simulated phone and with a few notices of the engine.
"""
import pathlib
import plistlib
import sqlite3
import sys

AVISOS = (
    b'{"tipo":"total","n":12}',
    b'{"tipo":"progreso","hechos":3,"fichero":"IMG_0001.HEIC"}',
    b'{"tipo":"error","motivo":"La contrase\\u00f1a no es."}',
    b'{"tipo":"fin","fichero_datos":"aqui"}\n{"tipo":"fin","lista":[{"a":1,"b":[true,null,-1e400]}]}',
    b'{"tipo":"fin","fichero_datos":"aqui"}\n',
    b'{"tipo":9223372036854775808}',
    b"{",
)


def main() -> None:
    clara, cifrada, destino = map(pathlib.Path, sys.argv[1:4])
    for programa in ("AvisoFuzz", "BolsaDeClavesFuzz", "ChatFuzz", "FichaFuzz", "LlaveroFuzz"):
        (destino / programa).mkdir(parents=True, exist_ok=True)
    for i, aviso in enumerate(AVISOS):
        (destino / "AvisoFuzz" / str(i)).write_bytes(aviso)
    manifiesto = (cifrada / "Manifest.plist").read_bytes()
    bolsa = bytes(plistlib.loads(manifiesto)["BackupKeyBag"])
    (destino / "BolsaDeClavesFuzz/bolsa").write_bytes(bolsa)
    (destino / "FichaFuzz/manifiesto").write_bytes(manifiesto)
    (destino / "LlaveroFuzz/elemento").write_bytes(bytes.fromhex("310f300d0c046163637404056162636465"))
    (destino / "LlaveroFuzz/llavero").write_bytes(plistlib.dumps({"genp": [{"v_Data": b"\3\0\0\0\7\0\0\0\0\0\0\0"}]}))
    (destino / "ChatFuzz/chat").write_text("[01/02/2026 10:00] Ana: hola\nsegunda\n[] YO: adiós: sí\n")
    lista = sqlite3.connect(f"file:{clara / 'Manifest.db'}?mode=ro", uri=True)
    for i, (ficha,) in enumerate(lista.execute("SELECT file FROM Files WHERE flags = 1 LIMIT 20")):
        (destino / "FichaFuzz" / f"ficha{i}").write_bytes(ficha)


if __name__ == "__main__":
    main()
