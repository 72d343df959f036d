#!/usr/bin/env python3
"""The engine against what nobody honest writes: hostiles.py ENGINE COPIA-SIMULADA GENERATOR RUNS [SEED]

Half of the runs open a backup of which a list, a database, a record or a file is damaged or made to hurt; half speak to
a phone that answers as it likes (telefono-hostil.py). Each is a process of its own, whose ending, time and memory are
measured: none may end by a signal, wait beyond 15 s, or take more than 500 MB; and nothing may be written elsewhere.
"""
import collections
import concurrent.futures
import os
import pathlib
import plistlib
import random
import resource
import shutil
import socket
import sqlite3
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).parent))
hostil = __import__("telefono-hostil")

SEGUNDOS, MEGAS = 15.0, 500
NUNCA_ACABA = ("WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x+1 FROM c) "
               "SELECT x AS fileID, 'HomeDomain' AS domain, 'a' || x AS relativePath, 1 AS flags, NULL AS file FROM c")
ESQUEMAS = (
    f"DROP TABLE Files; CREATE VIEW Files AS {NUNCA_ACABA}",
    "ALTER TABLE Files RENAME TO F; CREATE VIRTUAL TABLE Files USING fts5(fileID, domain, relativePath, flags, file)",
    "DROP INDEX IF EXISTS FilesRelativePathIdx; ALTER TABLE Files DROP COLUMN relativePath; "
    "ALTER TABLE Files ADD COLUMN relativePath AS (instr(zeroblob(30000000), zeroblob(15000000) || 'x'))",
    "ALTER TABLE Files DROP COLUMN file; ALTER TABLE Files ADD COLUMN file AS (hex(zeroblob(90000000)))",
    "UPDATE Files SET file = zeroblob(90000000) WHERE rowid = 3",
    "UPDATE Files SET relativePath = '../../' || relativePath",
    "UPDATE Files SET relativePath = CAST(zeroblob(3000000) AS TEXT) WHERE rowid < 9",
    "UPDATE OR IGNORE Files SET fileID = '../../../etc/passwd'",
    "UPDATE Files SET domain = 'HomeDomain', relativePath = 'Library/SMS/sms.db'",
    "INSERT INTO Files SELECT lower(hex(randomblob(20))), f.domain, f.relativePath || n.x, f.flags, f.file FROM "
    "(SELECT * FROM Files WHERE flags = 1 LIMIT 1) f, (WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x+1 FROM c LIMIT 100000) SELECT x FROM c) n",
    "DROP TABLE Files", "UPDATE Files SET flags = 'uno', file = 7",
)


def estropear(bytes_: bytes, azar: random.Random) -> bytes:
    malos = bytearray(bytes_)
    como = azar.randrange(5)
    if como == 0 and malos:
        for _ in range(azar.choice((1, 20, 300))):
            malos[azar.randrange(len(malos))] = azar.randrange(256)
    elif como == 1 and malos:
        for _ in range(3):
            malos[azar.randrange(min(100, len(malos)))] = azar.randrange(256)
    elif como == 2:
        del malos[azar.randrange(len(malos) + 1):]
    elif como == 3 and len(malos) > 8192:
        de, a = (azar.randrange(len(malos) // 4096) * 4096 for _ in range(2))
        malos[a:a + 4096] = malos[de:de + 4096]
    else:
        en = azar.randrange(len(malos) + 1)
        malos[en:en] = azar.randbytes(azar.randint(1, 5000))
    return bytes(malos)


def lo_que_no_es_fichero(donde: pathlib.Path, azar: random.Random) -> str:
    donde.unlink(missing_ok=True)
    que = azar.choice(("tubería", "carpeta", "enlace a /dev/zero", "enlace a sí mismo", "enchufe"))
    if que == "tubería":
        os.mkfifo(donde)
    elif que == "carpeta":
        donde.mkdir()
    elif que == "enchufe":
        aqui = os.getcwd()
        os.chdir(donde.parent)  # a socket's name is short
        socket.socket(socket.AF_UNIX).bind(donde.name)
        os.chdir(aqui)
    else:
        donde.symlink_to("/dev/zero" if "zero" in que else donde.name)
    return que


class Prueba:
    def __init__(self, motor: str, raiz: pathlib.Path, azar: random.Random):
        self.motor, self.raiz, self.azar = motor, raiz, azar
        self.males: list[str] = []
        self.cuenta: collections.Counter = collections.Counter()
        self.lento, self.grande = (0.0, ""), (0, "")

    def correr(self, que: str, *orden: str) -> None:
        empezo = time.monotonic()
        hijo = subprocess.Popen([self.motor, *orden], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_CORE, (0, 0)))
        while True:
            pid, estado, gasto = os.wait4(hijo.pid, os.WNOHANG)
            if pid:
                break
            if time.monotonic() - empezo > 60:
                hijo.kill()
            time.sleep(0.004)
        hijo.returncode = os.waitstatus_to_exitcode(estado)
        dura, megas = time.monotonic() - empezo, gasto.ru_maxrss // 1024
        self.lento, self.grande = max(self.lento, (dura, que)), max(self.grande, (megas, que))
        self.cuenta[que.partition(":")[0]] += 1
        if os.environ.get("TRAZA"):
            print(f"{dura:.2f} {megas} {hijo.returncode} {que[:90]}", flush=True)
        if hijo.returncode < 0 or dura > SEGUNDOS or megas > MEGAS:
            self.males.append(f"{que}: acaba con {hijo.returncode}, {dura:.1f} s, {megas} MB")

    def copia(self, buena: pathlib.Path) -> None:
        azar, lado = self.azar, self.raiz / "lado"
        copia = lado / "copias/U"
        shutil.rmtree(lado, ignore_errors=True)
        shutil.copytree(buena, copia, copy_function=os.link)
        clase = azar.choice(("lista", "base", "esquema", "ficha", "fichero", "no es fichero"))
        nombre = {"lista": "Manifest.plist", "base": "Manifest.db", "esquema": "Manifest.db", "ficha": "Manifest.db"}.get(clase)
        if nombre is None:
            enteros = sorted(f for f in copia.rglob("*") if f.is_file() and len(f.name) == 40)
            malo = azar.choice(enteros + [copia / "Manifest.db", copia / "Manifest.plist"] * 4)
        else:
            malo = copia / nombre
        bien = malo.read_bytes()
        malo.unlink()  # the links share their bytes with the good one
        que = clase
        if clase == "no es fichero":
            que += ": " + lo_que_no_es_fichero(malo, azar)
        elif clase == "lista" and azar.random() < 0.6:
            que += ": " + (cual := azar.choice(("honda", "bomba", "honda binaria", "entidades", "otra cosa")))
            malo.write_bytes(hostil.maldad(cual, azar))
        elif clase in ("esquema", "ficha"):
            malo.write_bytes(bien)
            with sqlite3.connect(malo) as base:
                if clase == "esquema":
                    que += ": " + (sql := azar.choice(ESQUEMAS))
                    base.executescript(sql)
                else:
                    que += ": " + (cual := azar.choice(("honda", "bomba", "honda binaria", "basura", "cambiada")))
                    base.execute("UPDATE Files SET file = ? WHERE rowid % ? = 0", (hostil.maldad(cual, azar), azar.choice((1, 2, 7))))
            base.close()
        else:
            malo.write_bytes(estropear(bien, azar))
        self.correr(f"copia, {que}", "extraer", "U", str(lado / "copias"), str(lado / "destino"))
        if {f.name for f in lado.iterdir()} - {"copias", "destino"}:
            self.males.append(f"copia, {que}: ha escrito fuera de su sitio")

    def telefono(self, silencio: bool) -> None:
        azar = self.azar
        modo = "silencio" if silencio else azar.choice(("honda", "bomba", "honda binaria", "entidades", "otra cosa",
                                                        "basura", "cambiada", "corte", "nada"))
        momento = 99 if modo == "nada" else azar.randint(0, 9)
        (self.raiz / "mux.modo").write_text(f"{momento};{modo};{azar.randrange(1 << 30)}")
        orden = azar.choice(("bateria", "copiar", "listar-carrete", "red"))
        self.correr(f"teléfono, {modo}: {orden}, {momento}", orden, hostil.UDID, str(self.raiz / "lado/fotos"))


def probar(motor: str, simulada: str, generador: str, vueltas: int, semilla: int) -> Prueba:
    azar = random.Random(semilla)
    with tempfile.TemporaryDirectory() as carpeta:
        raiz = pathlib.Path(carpeta)
        os.environ.pop("DBUS_SESSION_BUS_ADDRESS", None)
        os.environ.update(HOME=carpeta, XDG_RUNTIME_DIR=carpeta, TMPDIR=carpeta, USBMUXD_SOCKET_ADDRESS=f"UNIX:{raiz}/mux")
        subprocess.run([generador, "--carpeta", raiz / "telefono", "--tamano", "minimo"], check=True)
        subprocess.run([simulada, "--telefono", raiz / "telefono", "--copia", raiz / "buena"], check=True)
        telefono = subprocess.Popen([sys.executable, pathlib.Path(__file__).with_name("telefono-hostil.py"), raiz / "mux"],
                                    stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        telefono.stdout.readline()
        prueba = Prueba(motor, raiz, azar)
        try:
            for vuelta in range(vueltas):
                if vuelta % 2:
                    prueba.telefono(silencio=vuelta % 401 == 13)
                else:
                    prueba.copia(raiz / "buena")
                if len(prueba.males) > 5:
                    break
        finally:
            telefono.kill()
            telefono.wait()
    return prueba


def main() -> int:
    programas, vueltas = sys.argv[1:4], int(sys.argv[4])
    semilla = int(sys.argv[5]) if len(sys.argv) > 5 else random.randrange(1 << 30)
    print(f"Semilla {semilla}", flush=True)
    # Side by side, since those that wait for a phone that says nothing do little else.
    a_la_vez = min(8, vueltas)
    with concurrent.futures.ProcessPoolExecutor(a_la_vez) as grupo:
        hechas = [grupo.submit(probar, *programas, vueltas // a_la_vez, semilla + i) for i in range(a_la_vez)]
        pruebas = [hecha.result() for hecha in hechas]
    cuenta = sum((prueba.cuenta for prueba in pruebas), collections.Counter())
    males = [mal for prueba in pruebas for mal in prueba.males]
    lento, grande = max(prueba.lento for prueba in pruebas), max(prueba.grande for prueba in pruebas)
    for que, veces in sorted(cuenta.items()):
        print(f"  {que}: {veces}")
    print(f"Lo hostil: {sum(cuenta.values())} vueltas, {len(males)} mal; lo más lento {lento[0]:.1f} s ({lento[1][:80]}), "
          f"lo más grande {grande[0]} MB ({grande[1][:80]})")
    print("\n".join(males[:20]))
    return 1 if males else 0


if __name__ == "__main__":
    sys.exit(main())
