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

# Bodies of messages: one that mentions somebody, and one with a picture and a word.
CUERPOS = {
    "mencion": (
        "040b73747265616d747970656481e803840140848484194e534d757461626c6541747472696275746564537472696e6700848412"
        "4e5341747472696275746564537472696e67008484084e534f626a6563740085928484840f4e534d757461626c65537472696e67"
        "018484084e53537472696e67019584012b09486f6c6120416e612186840269490105928484840c4e5344696374696f6e61727900"
        "9584016901928498981d5f5f6b494d4d657373616765506172744174747269627574654e616d658692848484084e534e756d6265"
        "72008484074e5356616c7565009584012a849b9b00868699020392849a9b02928498981c5f5f6b494d4d656e74696f6e436f6e66"
        "69726d65644d656e74696f6e86928498980c2b333436303030303030303186929b929c8699010186"
    ),
    "adjunto": (
        "040b73747265616d747970656481e803840140848484194e534d757461626c6541747472696275746564537472696e6700848412"
        "4e5341747472696275746564537472696e67008484084e534f626a6563740085928484840f4e534d757461626c65537472696e67"
        "018484084e53537472696e67019584012b07efbfbc4d69726186840269490101928484840c4e5344696374696f6e617279009584"
        "01690292849898225f5f6b494d46696c655472616e73666572475549444174747269627574654e616d6586928498982961745f30"
        "5f35453243304231412d303030302d343030302d383030302d30303030303030303030303186928498981d5f5f6b494d4d657373"
        "616765506172744174747269627574654e616d658692848484084e534e756d626572008484074e5356616c7565009584012a849b"
        "9b00868699020492849a9b01929d92849f9ea19b01868686"
    ),
}


def main() -> None:
    clara, cifrada, destino = map(pathlib.Path, sys.argv[1:4])
    for programa in ("AvisoFuzz", "BolsaDeClavesFuzz", "ChatFuzz", "FichaFuzz", "LlaveroFuzz", "TextoConAtributosFuzz"):
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
    for nombre, cuerpo in CUERPOS.items():
        (destino / "TextoConAtributosFuzz" / nombre).write_bytes(bytes.fromhex(cuerpo))
    lista = sqlite3.connect(f"file:{clara / 'Manifest.db'}?mode=ro", uri=True)
    for i, (ficha,) in enumerate(lista.execute("SELECT file FROM Files WHERE flags = 1 LIMIT 20")):
        (destino / "FichaFuzz" / f"ficha{i}").write_bytes(ficha)


if __name__ == "__main__":
    main()
