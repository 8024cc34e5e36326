#pragma once

#include <QApplication>

#include <memory>

class CloseRequestFilter;
class InstanceLock;

/// The application object of a program of the device.
class VApplication : public QApplication {
    Q_OBJECT

public:
    /// The three flags belong to the device's own framework; this stand-in gives them no meaning.
    VApplication(int &argc, char **argv, bool, bool, bool);
    ~VApplication() override;

    /// Ends this process with status 0, without a message, when the same user already runs this program.
    void exitIfRunning();

private:
    std::unique_ptr<CloseRequestFilter> m_closeRequests;
    std::unique_ptr<InstanceLock> m_instanceLock;
};
