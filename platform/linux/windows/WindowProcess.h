#pragma once

#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace quorvane {

/// One run of the program with the windows. It ends with this object, and with this process however
/// that ends. Main thread only.
class WindowProcess : public QObject {
    Q_OBJECT

  public:
    explicit WindowProcess(QString program, QObject* parent = nullptr);
    ~WindowProcess() override;

    /// Starts it with the arguments and hands it `input` on standard input. Once.
    void start(const QStringList& arguments, const QByteArray& input = {});

    [[nodiscard]] bool isRunning() const { return process_.state() != QProcess::NotRunning; }

  Q_SIGNALS:
    /// Once, later, also when it could not be started or has crashed. `output` is what it wrote to
    /// standard output; `error` is empty when all went well, else what went wrong.
    void ended(const QByteArray& output, const QString& error);

  private:
    void finished(int exitCode, QProcess::ExitStatus status);
    void failed(QProcess::ProcessError error);
    [[nodiscard]] QString lastWords();

    QString program_;
    QProcess process_;
};

} // namespace quorvane
