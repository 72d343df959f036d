#include "ui/componentes/ElegirCarpeta.h"

#include <QDir>
#include <QFileDialog>

namespace vellora
{

void ElegirCarpeta::abrir(const QString &desde)
{
    QDir donde(desde);
    while (!donde.exists() && donde.cdUp()) {
    }
    auto *dialogo = new QFileDialog;
    dialogo->setAttribute(Qt::WA_DeleteOnClose);
    dialogo->setFileMode(QFileDialog::Directory);
    dialogo->setOption(QFileDialog::ShowDirsOnly);
    dialogo->setWindowTitle(titulo);
    dialogo->setLabelText(QFileDialog::Accept, textoDeAceptar);
    dialogo->setDirectory(donde);
    connect(dialogo, &QFileDialog::fileSelected, this, &ElegirCarpeta::elegida);
    connect(this, &QObject::destroyed, dialogo, &QWidget::close);
    dialogo->open();
}

} // namespace vellora
