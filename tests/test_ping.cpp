// The window manager's ping during a run, on a real X server: the window
// answers while the translator still runs. Needs Xvfb; skipped without it.
#include "runcommand.h"
#include "scratchdir.h"
#include "standins.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTest>
#include <QWidget>

#include <poll.h>
#include <xcb/xcb.h>

namespace
{

xcb_atom_t atom(xcb_connection_t* x, const char* name)
{
    xcb_intern_atom_reply_t* reply =
        xcb_intern_atom_reply(x, xcb_intern_atom(x, 0, uint16_t(qstrlen(name)), name), nullptr);
    const xcb_atom_t found = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    free(reply);
    return found;
}

// Waits up to five seconds for the window's answer to a ping, sent to the
// root window as the protocol asks; false when none came.
bool answered(xcb_connection_t* x, xcb_atom_t ping)
{
    pollfd fd{xcb_get_file_descriptor(x), POLLIN, 0};
    for (int waited = 0; waited < 5000; waited += 20) {
        while (xcb_generic_event_t* event = xcb_poll_for_event(x)) {
            const bool pong =
                (event->response_type & 0x7f) == XCB_CLIENT_MESSAGE &&
                reinterpret_cast<xcb_client_message_event_t*>(event)->data.data32[0] == ping;
            free(event);
            if (pong)
                return true;
        }
        ::poll(&fd, 1, 20);
    }
    return false;
}

} // namespace

class TestPing : public QObject
{
    Q_OBJECT

private slots:
    // In a copy of this program on the X server: a window, then a run.
    void window()
    {
        if (qEnvironmentVariableIsEmpty("TAMSEL_PING_WINDOW"))
            QSKIP("the window side of pingDuringRun");
        QWidget shown;
        shown.show();
        QVERIFY(QTest::qWaitForWindowExposed(&shown));
        std::printf("window %llu\n", static_cast<unsigned long long>(shown.winId()));
        std::fflush(stdout);
        runCommand("sh -c \"touch started; sleep 3; touch done\"", "ping");
    }

    void pingDuringRun()
    {
        const QString server = QStandardPaths::findExecutable("Xvfb");
        if (server.isEmpty())
            QSKIP("no Xvfb to run a window on");
        ScratchDir dir;
        Standins standins(dir.path());
        QProcess xvfb;
        xvfb.start(server, {"-displayfd", "1", "-nolisten", "tcp", "-screen", "0", "640x480x24"});
        QVERIFY(xvfb.waitForReadyRead(20000));
        const QByteArray display = ":" + xvfb.readLine().trimmed();
        xcb_connection_t* x = xcb_connect(display.constData(), nullptr);
        QVERIFY(!xcb_connection_has_error(x));
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
        const uint32_t mask =
            XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(x, root, XCB_CW_EVENT_MASK, &mask);

        QProcess window;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("DISPLAY", display);
        env.insert("QT_QPA_PLATFORM", "xcb");
        env.insert("TAMSEL_PING_WINDOW", "1");
        window.setProcessEnvironment(env);
        window.start(QCoreApplication::applicationFilePath(), {"window"});
        xcb_window_t id = 0;
        for (int waited = 0; id == 0 && waited < 20000 && window.state() != QProcess::NotRunning;
             waited += 50) {
            window.waitForReadyRead(50);
            while (window.canReadLine()) {
                const QByteArray line = window.readLine().trimmed();
                id = line.startsWith("window ") ? xcb_window_t(line.mid(7).toULongLong()) : id;
            }
        }
        QVERIFY(id != 0);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(dir.filePath("started")), 20000);
        xcb_client_message_event_t ping{};
        ping.response_type = XCB_CLIENT_MESSAGE;
        ping.format = 32;
        ping.window = id;
        ping.type = atom(x, "WM_PROTOCOLS");
        ping.data.data32[0] = atom(x, "_NET_WM_PING");
        ping.data.data32[2] = ping.window;
        xcb_send_event(x, 0, ping.window, XCB_EVENT_MASK_NO_EVENT,
                       reinterpret_cast<const char*>(&ping));
        xcb_flush(x);
        const bool pong = answered(x, ping.data.data32[0]);
        const bool stillRunning = !QFile::exists(dir.filePath("done"));
        window.waitForFinished(20000);
        xcb_disconnect(x);
        xvfb.terminate();
        xvfb.waitForFinished();
        QVERIFY(pong);
        QVERIFY(stillRunning);
    }
};

QTEST_MAIN(TestPing)
#include "test_ping.moc"
