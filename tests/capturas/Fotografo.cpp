#include "capturas/Fotografo.h"

#include "ui/componentes/Tema.h"

#include <QHash>
#include <QImage>
#include <QQuickWindow>
#include <QTest>

using namespace Qt::StringLiterals;
using vellora::Tema;

namespace
{

/// Heights that go with the widths; the smallest window is 640 high.
int altoPara(int ancho)
{
    static const QHash<int, int> altos{{960, 640}, {1280, 820}, {1920, 1080}};
    return altos.value(ancho, 820);
}

} // namespace

Fotografo::Fotografo(const QString &laCarpeta) : carpeta(laCarpeta)
{
    carpeta.mkpath(u"."_s);
}

void Fotografo::retrata(QQuickWindow &ventana, const QString &nombre, const QList<int> &anchos,
                        const std::function<void()> &justoAntes)
{
    for (const int ancho : anchos) {
        ventana.resize(ancho, altoPara(ancho));
        for (const bool oscuro : {false, true}) {
            Tema::unico().elegir(oscuro ? Tema::Eleccion::Oscuro : Tema::Eleccion::Claro);
            QTest::qWait(250);
            if (justoAntes)
                justoAntes();
            const auto fichero = u"%1-%2-%3.png"_s.arg(nombre).arg(ancho).arg(oscuro ? u"oscuro"_s : u"claro"_s);
            todasGuardadas_ &= ventana.grabWindow().save(carpeta.filePath(fichero));
            ++hechas_;
        }
    }
}
