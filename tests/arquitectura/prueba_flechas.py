#!/usr/bin/env python3
"""Sees that the arrow test tells each kind of fault, and is silent on a house in order."""
import pathlib
import tempfile
import unittest

import flechas

LISTS = "add_library(room core/Tarea.cpp backups/Copias.cpp apps/Apps.cpp session/Modelo.cpp ui/Ventana.cpp Mux.cpp)"


class Flechas(unittest.TestCase):
    def told(self, files):
        """The sentences told on a house made of these files, each with its text."""
        with tempfile.TemporaryDirectory() as folder:
            top = pathlib.Path(folder).resolve()
            base = {"src/CMakeLists.txt": LISTS, "simulator/CMakeLists.txt": LISTS,
                    "src/core/Tarea.h": "", "src/backups/Copias.h": "", "src/apps/Apps.h": "", "src/session/Modelo.h": "",
                    "src/core/Tarea.cpp": "", "src/backups/Copias.cpp": "", "src/apps/Apps.cpp": "",
                    "src/session/Modelo.cpp": ""}
            for name, text in (base | files).items():
                path = top / name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text, encoding="utf-8")
            return [f"{path.relative_to(top)}:{number}: {what}" for path, number, what in flechas.faults(top)]

    def test_house_in_order(self):
        self.assertEqual(self.told({
            "src/ui/Ventana.cpp": '#include "backups/Copias.h"\n#include "session/Modelo.h"\n#include <QQuickItem>\n',
            "src/backups/Copias.cpp": '#include "backups/Copias.h"\n#include "core/Tarea.h"\n#include <QString>\n',
            "simulator/Mux.h": "", "simulator/Mux.cpp": '#include "Mux.h"\n#include <QFile>\n'}), [])

    def test_each_fault_is_told(self):
        rows = {
            "upwards": ("src/core/Tarea.cpp", '\n#include "session/Modelo.h"', "2: core -> session is not"),
            "between areas": ("src/apps/Apps.cpp", '#include "backups/Copias.h"', "1: apps -> backups is not"),
            "not from src": ("src/backups/Copias.cpp", '#include "Copias.h"', "is not written from src/"),
            "window below ui": ("src/session/Modelo.cpp", "#include <QQmlEngine>", "session sees Qt Quick"),
            "images in backups": ("src/backups/Copias.cpp", "#include <QImage>", "backups sees Qt Gui images"),
            "unknown room": ("src/utils/Cosas.h", "", "utils is not a room"),
            "simulator to src": ("simulator/Mux.cpp", '#include "../src/core/Tarea.h"', "simulator -> src is not"),
            "simulator by room": ("simulator/Mux.cpp", '#include "core/Tarea.h"', "is not a file of simulator/"),
            "never built": ("src/core/Olvidado.cpp", "", "no CMakeLists.txt names this file"),
            "somebody's home": ("docs/guia.md", "see /ho" + "me/marta/x", "names a place of one machine"),
            "a registry": ("README.md", "https://fi" + "les.example.org", "names a place of one machine"),
        }
        for row, (name, text, sentence) in rows.items():
            with self.subTest(row):
                found = self.told({name: text})
                self.assertTrue(any(fault.startswith(name) and sentence in fault for fault in found), found)


if __name__ == "__main__":
    unittest.main()
