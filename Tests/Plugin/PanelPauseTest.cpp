// Pausing and resuming, one row or all, and what happens to the files of what is still paused at the end.

#include "PanelRig.h"
#include "TestMain.h"

class PanelPauseTest : public QObject
{
    Q_OBJECT

private slots:
    void PressingTheStateButtonPausesAndStartsAgain();
    void AFailedRowIsRetried();
    void OnePausedRowIsAllThatIsResumed();
    void PausingAllPausesEveryRowWhateverItsState();
    void ResumingAllKeepsTheOrderOfThePauses();
    void ResumingAllSkipsRowsThatAreGone();
    void DeletingARowForgetsThatItWasPaused();
    void TheEnginesStopPausesEveryRowWithoutAskingItAgain();
    void ARowPausedTwiceStartsOnce();
    void StartingARowForgetsAllItsPauses();
    void ANewLanguageOffersToPauseWhateverIsPaused();
    void ListsAreForwardedToTheEngine();
    void FilesOfPausedRowsGoWithThePanel();
    void AFileThatStaysIsLoggedAsAFailure();
    void WithoutPausedRowsNoFileGoes();
};

void PanelPauseTest::PressingTheStateButtonPausesAndStartsAgain()
{
    PanelRig rig;
    rig.Send({"a", "b"});
    rig.Show();
    rig.RaiseState("a", 1);
    rig.Record("a").lReceivedSize = 500;
    rig.Calls().Clear();
    rig.Press("a", PanelRig::StateButton);
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}), Texts({"StopDeviceRecordDownload a"}));
    QCOMPARE(rig.StateOf("a"), 5);
    QCOMPARE(rig.StateOf("b"), 0);
    QCOMPARE(rig.Record("a").lReceivedSize, qint64(0));
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_resume_all"));

    rig.Calls().Clear();
    rig.Press("a", PanelRig::StateButton);
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}), Texts({"StartDeviceRecordDownload a"}));
    QCOMPARE(rig.StateOf("a"), 0);
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_suspend_all"));
    QCOMPARE(rig.Counts(), QList<int>({0, 1, 2}));
}

void PanelPauseTest::AFailedRowIsRetried()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    rig.RaiseState("a", 0);
    QCOMPARE(rig.StateOf("a"), 3);
    rig.Calls().Clear();
    rig.Press("a", PanelRig::StateButton);
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}), Texts({"StartDeviceRecordDownload a"}));
    QCOMPARE(rig.StateOf("a"), 0);
}

void PanelPauseTest::OnePausedRowIsAllThatIsResumed()
{
    PanelRig rig;
    rig.Send({"a", "b"});
    rig.Show();
    rig.Press("b", PanelRig::StateButton);
    rig.Calls().Clear();
    rig.PressAllStart();
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}), Texts({"StartDeviceRecordDownload b"}));
    QCOMPARE(rig.StateOf("b"), 0);
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_suspend_all"));

    rig.Calls().Clear();
    rig.PressAllStart();
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}), Texts({"StopDeviceRecordDownload a", "StopDeviceRecordDownload b"}));
    QCOMPARE(rig.StateOf("a"), 5);
    QCOMPARE(rig.StateOf("b"), 5);
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_resume_all"));
}

void PanelPauseTest::PausingAllPausesEveryRowWhateverItsState()
{
    PanelRig rig;
    rig.Send({"a", "b", "c", "d"}); // two run, two wait
    rig.Show();
    rig.RaiseState("a", 0); // failed, so that c starts
    rig.RaiseState("b", 1);
    rig.Record("b").lReceivedSize = 700;
    rig.Calls().Clear();
    rig.PressAllStart();
    for (const char* pszRecordId : {"a", "b", "c", "d"}) {
        QCOMPARE(rig.StateOf(pszRecordId), 5);
        QCOMPARE(rig.Record(pszRecordId).lReceivedSize, qint64(0));
    }
    // All leave the queue at once: stopping b does not start d.
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}), Texts({"StopDeviceRecordDownload b", "StopDeviceRecordDownload c"}));
    rig.Calls().Clear();
    rig.PressAllStart();
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}),
             Texts({"StartDeviceRecordDownload a", "StartDeviceRecordDownload b"}));
    QCOMPARE(rig.StateOf("d"), 0);
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_suspend_all"));
}

void PanelPauseTest::ResumingAllKeepsTheOrderOfThePauses()
{
    PanelRig rig;
    rig.Send({"a", "b"});
    rig.Show();
    rig.Press("b", PanelRig::StateButton);
    rig.Press("a", PanelRig::StateButton);
    rig.Calls().Clear();
    rig.PressAllStart();
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}),
             Texts({"StartDeviceRecordDownload b", "StartDeviceRecordDownload a"}));
}

void PanelPauseTest::ResumingAllSkipsRowsThatAreGone()
{
    PanelRig rig;
    rig.Send({"a", "b"});
    rig.Show();
    rig.Press("a", PanelRig::StateButton);
    rig.Panel().OnDownloadRecordStates(QStringLiteral("a"), 2, false); // finished: stays in the list of paused ids
    rig.Calls().Clear();
    rig.PressAllStart();
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}), Texts({}));
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_suspend_all"));
    rig.PressAllStart(); // the list is empty now
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}), Texts({"StopDeviceRecordDownload b"}));
}

void PanelPauseTest::DeletingARowForgetsThatItWasPaused()
{
    PanelRig rig;
    rig.Send({"a", "b"});
    rig.Show();
    rig.Press("a", PanelRig::StateButton);
    rig.Panel().OnStopAllDownload(); // a stands in the list of paused ids twice
    rig.Press("b", PanelRig::StateButton);
    rig.Press("a", PanelRig::DeleteButton);
    rig.Calls().Clear();
    rig.PressAllStart(); // nothing is paused: pauses
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_resume_all"));
    QCOMPARE(rig.StateOf("b"), 5);
    QCOMPARE(rig.Calls().Count("Start"), 0);
}

void PanelPauseTest::TheEnginesStopPausesEveryRowWithoutAskingItAgain()
{
    PanelRig rig;
    rig.Send({"a", "b", "c"});
    rig.RaiseState("a", 1);
    rig.Record("a").lReceivedSize = 300;
    rig.Calls().Clear();
    rig.Send("EventNotifyDeleteDownloadRecord", {rig.World().Folder()});
    for (const char* pszRecordId : {"a", "b", "c"}) {
        QCOMPARE(rig.StateOf(pszRecordId), 5);
        QCOMPARE(rig.Record(pszRecordId).lReceivedSize, qint64(0));
    }
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_resume_all"));
    QCOMPARE(rig.Calls().Lines({"StopDeviceRecordDownload a"}).size(), 1);
    QCOMPARE(rig.Calls().Lines({"StopDeviceRecordDownload b"}).size(), 1);
    QCOMPARE(rig.View().GetAllItem().size(), 3);

    rig.Calls().Clear();
    rig.Panel().OnStopAllDownload();
    QCOMPARE(rig.Calls().Count("Stop"), 0);
}

void PanelPauseTest::ARowPausedTwiceStartsOnce()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    rig.Press("a", PanelRig::StateButton);
    rig.Panel().OnStopAllDownload();
    rig.Calls().Clear();
    rig.PressAllStart();
    QCOMPARE(rig.Calls().Short({"Start"}), Texts({"StartDeviceRecordDownload a"}));
    QCOMPARE(rig.Counts(), QList<int>({0, 1}));
    QCOMPARE(rig.StateOf("a"), 0);
}

void PanelPauseTest::StartingARowForgetsAllItsPauses()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    rig.Press("a", PanelRig::StateButton);
    rig.Panel().OnStopAllDownload();
    rig.Press("a", PanelRig::StateButton);
    QCOMPARE(rig.StateOf("a"), 0);
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_suspend_all"));
    rig.Calls().Clear();
    rig.PressAllStart();
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}), Texts({"StopDeviceRecordDownload a"}));
}

void PanelPauseTest::ANewLanguageOffersToPauseWhateverIsPaused()
{
    PanelRig rig;
    rig.Send({"a", "b"});
    rig.Panel().OnStopAllDownload();
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_resume_all"));
    rig.Panel().RefreshTexts();
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_suspend_all"));
    QCOMPARE(rig.StateOf("a"), 5);
}

void PanelPauseTest::ListsAreForwardedToTheEngine()
{
    PanelRig rig;
    const auto pA = rig.Made("a");
    const auto pB = rig.Made("b");
    rig.Panel().StartRecordDownloads({pA, pB});
    QCOMPARE(rig.View().GetAllItem().size(), 2);
    rig.Panel().PauseRecordDownloads({pB, pA});
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}), Texts({"StartDeviceRecordDownload a", "StartDeviceRecordDownload b",
                                                          "StopDeviceRecordDownload b", "StopDeviceRecordDownload a"}));
}

void PanelPauseTest::FilesOfPausedRowsGoWithThePanel()
{
    PanelRig rig;
    rig.Send({"a", "b", "c"});
    rig.Show();
    for (const char* pszFile : {"a.mp4", "a.jpg", "b.jpg", "c.mp4", "c.jpg"})
        rig.World().WriteFile(pszFile);
    rig.Press("b", PanelRig::StateButton);
    rig.Press("a", PanelRig::StateButton);
    rig.Press("a", PanelRig::StateButton);
    rig.Press("a", PanelRig::StateButton);
    rig.World().Log().Clear();
    rig.Destroy();
    QCOMPARE(PanelLog(rig.World(), "DownloadWidget::Clear"),
             Texts({"319 DownloadWidget::ClearPauseRecordFile [] 2 remove file[~/b.jpg]",
                    "306 DownloadWidget::ClearPauseRecordFile [] 2 remove file[~/a.mp4]",
                    "319 DownloadWidget::ClearPauseRecordFile [] 2 remove file[~/a.jpg]"}));
    QVERIFY(!rig.World().HasFile("a.mp4"));
    QVERIFY(!rig.World().HasFile("a.jpg"));
    QVERIFY(!rig.World().HasFile("b.jpg"));
    QVERIFY(rig.World().HasFile("c.mp4"));
    QVERIFY(rig.World().HasFile("c.jpg"));
}

void PanelPauseTest::AFileThatStaysIsLoggedAsAFailure()
{
    PanelRig rig;
    rig.Send({"a", "b"});
    rig.World().WriteFile("a.mp4/inside"); // folders cannot be removed as files
    rig.World().WriteFile("a.jpg/inside");
    rig.World().WriteFile("b.mp4");
    rig.Panel().OnBtnAllStart();
    rig.World().Log().Clear();
    rig.Destroy();
    QCOMPARE(PanelLog(rig.World(), "DownloadWidget::Clear"),
             Texts({"310 DownloadWidget::ClearPauseRecordFile [] 6 remove file[~/a.mp4]",
                    "323 DownloadWidget::ClearPauseRecordFile [] 6 remove file[~/a.jpg]",
                    "306 DownloadWidget::ClearPauseRecordFile [] 2 remove file[~/b.mp4]"}));
    QVERIFY(!rig.World().HasFile("b.mp4"));
}

void PanelPauseTest::WithoutPausedRowsNoFileGoes()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.World().WriteFile("a.mp4");
    rig.World().Log().Clear();
    rig.Destroy();
    QCOMPARE(PanelLog(rig.World(), "DownloadWidget::Clear"), Texts({}));
    QVERIFY(rig.World().HasFile("a.mp4"));
}

KX_TEST(PanelPauseTest, QApplication)

#include "PanelPauseTest.moc"
