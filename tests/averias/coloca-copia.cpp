// Puts a backup that lies ready in its place, as a run that has ended does: coloca-copia BACKUPS UDID NEW KEPT
// With "-" for NEW it does what the next start of the program does.
#include "backups/CopiaEnCurso.h"

#include <QCoreApplication>

#include <filesystem>

using namespace Qt::StringLiterals;
using namespace vellora;

int main(int argc, char **argv)
{
    const QCoreApplication programa(argc, argv);
    const auto palabras = QCoreApplication::arguments();
    const auto copias = palabras.value(1);
    const int guardadas = palabras.value(4).toInt();
    if (palabras.value(3) == u"-"_s) {
        CopiaEnCurso::recuperar(copias, guardadas);
        return 0;
    }
    auto obra = CopiaEnCurso::abrir(copias, palabras.value(2), CopiaEnCurso::Modo::Completa, guardadas);
    if (!obra)
        return 1;
    std::filesystem::copy(palabras.value(3).toStdString(), obra->carpeta().toStdString(),
                          std::filesystem::copy_options::recursive);
    return obra->colocar(ComprobacionDeCopia::Veredicto::Entera) ? 0 : 1;
}
