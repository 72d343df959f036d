// Puts a backup that lies ready in its place, as a run that has ended does: coloca-copia BACKUPS UDID NEW KEPT
// With "-" for NEW it does what the next start of the program does.
#include "backups/CopiaEnCurso.h"

#include <QCoreApplication>
#include <QProcess>

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
    // A process of its own, which the count of steps leaves out.
    QProcess copiar;
    auto entorno = QProcessEnvironment::systemEnvironment();
    entorno.remove(u"LD_PRELOAD"_s);
    copiar.setProcessEnvironment(entorno);
    copiar.start(u"cp"_s, {u"-a"_s, palabras.value(3), obra->carpeta()});
    copiar.waitForFinished();
    return obra->colocar(ComprobacionDeCopia::Veredicto::Entera) ? 0 : 1;
}
