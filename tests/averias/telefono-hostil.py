#!/usr/bin/env python3
"""A phone behind a usbmuxd socket that answers honestly up to a moment, and from then on as it likes: telefono-hostil.py SOCKET

The way is read from the file SOCKET.modo before each connection, as "MOMENT WAY": the moment counts the property lists
that it sends, those of usbmuxd too. Shares no code with the simulated phone, which is always honest.
"""
import pathlib
import plistlib
import random
import socket
import struct
import sys
import threading
import time

UDID = "00008120-000A1B2C3D4C1E9A"
REGISTRO = {"HostID": "H", "SystemBUID": "B", "DeviceCertificate": b"", "HostCertificate": b"", "HostPrivateKey": b"",
            "RootCertificate": b"", "RootPrivateKey": b""}


def bomba(niveles: int, veces: int) -> bytes:
    """A binary list of arrays, each of which holds the next one so many times."""
    objetos = [bytes([0xAF, 0x12]) + struct.pack(">I", veces) + struct.pack(">I", i) * veces for i in range(1, niveles + 1)]
    objetos.append(b"\x10\x01")
    cuerpo, sitios = b"bplist00", b""
    for objeto in objetos:
        sitios += struct.pack(">I", len(cuerpo))
        cuerpo += objeto
    return cuerpo + sitios + struct.pack(">6xBBQQQ", 4, 4, len(objetos), 0, len(cuerpo))


def maldad(cual: str, azar: random.Random) -> bytes:
    """Bytes for the place of a property list."""
    if cual == "honda":
        return b'<plist version="1.0">' + b"<array>" * 300_000 + b"</array>" * 300_000 + b"</plist>"
    if cual == "bomba":
        return bomba(25, 12)
    if cual == "honda binaria":
        return bomba(100_000, 1)
    if cual == "entidades":
        declaradas = "".join(f'<!ENTITY e{i} "{f"&e{i - 1};" * 20}">' for i in range(1, 20))
        return f'<!DOCTYPE plist [<!ENTITY e0 "a">{declaradas}]><plist><string>&e19;</string></plist>'.encode()
    if cual == "otra cosa":
        return plistlib.dumps(azar.choice(([], "x", 7, {"Error": 5}, {"Request": ["x"] * 5000}, {"Port": -1}, {"Value": {}})))
    if cual == "basura":
        return azar.randbytes(azar.choice((0, 1, 7, 200, 70_000)))
    bien = bytearray(plistlib.dumps({"Request": "QueryType", "Type": "com.apple.mobile.lockdown", "Port": 7, "SessionID": "s"},
                                    fmt=azar.choice((plistlib.FMT_XML, plistlib.FMT_BINARY))))
    for _ in range(azar.randint(1, 30)):
        bien[azar.randrange(len(bien))] = azar.randrange(256)
    return bytes(bien)


class Conexion(threading.Thread):
    def __init__(self, enchufe: socket.socket, modo: str):
        super().__init__(daemon=True)
        momento, self.modo, semilla = modo.split(";")
        self.quedan, self.azar, self.enchufe = int(momento), random.Random(int(semilla)), enchufe
        enchufe.settimeout(None if self.modo == "silencio" else 0.5)

    def recibir(self, cuantos: int) -> bytes:
        bytes_ = b""
        while len(bytes_) < cuantos:
            trozo = self.enchufe.recv(cuantos - len(bytes_))
            if not trozo:
                raise EOFError
            bytes_ += trozo
        return bytes_

    def decir(self, cabeza, lista: dict) -> None:
        self.quedan -= 1
        if self.quedan >= 0:
            cuerpo = plistlib.dumps(lista)
        elif self.modo == "silencio":
            time.sleep(60)
            raise EOFError
        elif self.modo == "largo":
            self.enchufe.sendall(cabeza(self.azar.choice((0, 1, 3, 0xFFFFFF, 0x7FFFFFFF, 0xFFFFFFFF))) + b"<plist>" * 10)
            time.sleep(self.azar.choice((0, 60)))
            raise EOFError
        elif self.modo == "corte":
            self.enchufe.sendall((cabeza(5000) + b"x" * 400)[:self.azar.randint(0, 300)])
            raise EOFError
        else:
            cuerpo = maldad(self.modo, self.azar)
        self.enchufe.sendall(cabeza(len(cuerpo)) + cuerpo)

    def run(self) -> None:
        try:
            if self.mux() == 62078:
                self.lockdown()
            else:
                self.afc()
        except (OSError, EOFError, ValueError, KeyError, struct.error, plistlib.InvalidFileException):
            pass
        self.enchufe.close()

    def mux(self) -> int:
        while True:
            largo, version, clase, cuenta = struct.unpack("<IIII", self.recibir(16))
            peticion = plistlib.loads(self.recibir(largo - 16))
            cabeza = lambda n, cuenta=cuenta: struct.pack("<IIII", (n + 16) & 0xFFFFFFFF, 1, 8, cuenta)
            que = peticion["MessageType"]
            if que == "ListDevices":
                uno = {"DeviceID": 1, "MessageType": "Attached", "Properties": {
                    "ConnectionType": "USB", "DeviceID": 1, "LocationID": 0, "ProductID": 4776, "SerialNumber": UDID}}
                self.decir(cabeza, {"DeviceList": [uno]})
            elif que == "ReadPairRecord":
                self.decir(cabeza, {"PairRecordData": plistlib.dumps(REGISTRO)})
            elif que == "ReadBUID":
                self.decir(cabeza, {"BUID": "B"})
            else:
                self.decir(cabeza, {"MessageType": "Result", "Number": 0})
                if que == "Connect":
                    return socket.ntohs(peticion["PortNumber"])

    def lockdown(self) -> None:
        cabeza = lambda n: struct.pack(">I", n & 0xFFFFFFFF)
        while True:
            peticion = plistlib.loads(self.recibir(struct.unpack(">I", self.recibir(4))[0]))
            que = peticion["Request"]
            respuesta = {"Request": que, "Result": "Success"}
            respuesta |= {"QueryType": {"Type": "com.apple.mobile.lockdown"}, "GetValue": {"Value": "17.5"},
                          "StartSession": {"SessionID": "s", "EnableSessionSSL": False},
                          "StartService": {"Port": 7, "Service": peticion.get("Service", "")}}.get(que, {})
            self.decir(cabeza, respuesta)

    def afc(self) -> None:
        """Answers to the file service, or to whatever it is, that claim what they like."""
        while True:
            pedido = self.recibir(40)
            _, entero, este, numero, _ = struct.unpack("<8sQQQQ", pedido)
            self.recibir(entero - 40)
            datos = self.azar.choice((b"DCIM\0", b"st_ifmt\0S_IFDIR\0st_size\0" + b"9" * 30 + b"\0", b"a\0" * 100_000, b"",
                                      self.azar.randbytes(5000), b"sin final", b"../../../x\0"))
            dice = self.azar.choice((len(datos),) * 6 + (0, 1, 1 << 20, 1 << 31, (1 << 63) - 1, (1 << 64) - 41)) + 40
            primera = self.azar.choice((dice,) * 5 + (40, 0, 39, 1 << 40))
            clase = self.azar.choice((1, 2, 2, 2, 2, 0x0E, 0xFF))
            self.enchufe.sendall(struct.pack("<8sQQQQ", b"CFA6LPAA", dice, primera, numero, clase) + datos)


def main() -> None:
    ruta = pathlib.Path(sys.argv[1])
    enchufe = socket.socket(socket.AF_UNIX)
    enchufe.bind(str(ruta))
    enchufe.listen(50)
    print("LISTO", flush=True)
    while True:
        otro, _ = enchufe.accept()
        Conexion(otro, ruta.with_suffix(".modo").read_text()).start()


if __name__ == "__main__":
    main()
