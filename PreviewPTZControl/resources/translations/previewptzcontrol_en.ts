<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name>PreviewPTZControl::CPTZCloud</name>
    <message>
        <source>UpperLeft</source>
        <translation>Up left</translation>
    </message>
    <message>
        <source>TurnUp</source>
        <translation>Tilt up</translation>
    </message>
    <message>
        <source>UpperRight</source>
        <translation>Up right</translation>
    </message>
    <message>
        <source>TurningToTheLeft</source>
        <translation>Pan left</translation>
    </message>
    <message>
        <source>StartAuto-Scanning</source>
        <translation>Start auto-scan</translation>
    </message>
    <message>
        <source>StopAuto-Scanning</source>
        <translation>Stop auto-scan</translation>
    </message>
    <message>
        <source>ToTheRightTurn</source>
        <translation>Pan right</translation>
    </message>
    <message>
        <source>LowerLeft</source>
        <translation>Down left</translation>
    </message>
    <message>
        <source>TurnDown</source>
        <translation>Tilt down</translation>
    </message>
    <message>
        <source>LowerRight</source>
        <translation>Down right</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::CPreviewPTZWnd</name>
    <message>
        <source>AddPreset</source>
        <translation>Add preset</translation>
    </message>
    <message>
        <source>UpdatePTZ</source>
        <translation>Update PTZ information</translation>
    </message>
    <message>
        <source>PatrolRecovery</source>
        <translation>Patrol recovery</translation>
    </message>
    <message>
        <source>AuxiliaryFocus</source>
        <translation>One-key focus</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Light</translation>
    </message>
    <message>
        <source>Wiper</source>
        <translation>Wiper</translation>
    </message>
    <message>
        <source>LensInitialization</source>
        <translation>Lens initialization</translation>
    </message>
    <message>
        <source>ManualTracking</source>
        <translation>Manual tracking</translation>
    </message>
    <message>
        <source>ManualFaceCapture</source>
        <translation>Manual face capture</translation>
    </message>
    <message>
        <source>3DPositioning</source>
        <translation>3D positioning</translation>
    </message>
    <message>
        <source>AutoTracking</source>
        <translation>Auto tracking</translation>
    </message>
    <message>
        <source>ParkAction</source>
        <translation>Park action</translation>
    </message>
    <message>
        <source>Slow</source>
        <translation>Slow</translation>
    </message>
    <message>
        <source>Fast</source>
        <translation>Fast</translation>
    </message>
    <message>
        <source>Corvo-ControlClient.076b8e1c619744ee8a8f04026e32bea4.msg</source>
        <translation>Not available for a camera of a cascaded site.</translation>
    </message>
    <message>
        <source>ThePathToThe%wFHUZzrWxBzbnqaB</source>
        <translation>Path %1</translation>
    </message>
    <message>
        <source>TrackOperationInProgkdawnXPU</source>
        <translation>A pattern is being recorded on this camera.</translation>
    </message>
    <message>
        <source>TrajectoryDeletionSusDBpbcFY</source>
        <translation>Pattern deleted.</translation>
    </message>
    <message>
        <source>Focus+</source>
        <translation>Focus near</translation>
    </message>
    <message>
        <source>AfterTheFocusAdjustment(-)</source>
        <translation>Focus far</translation>
    </message>
    <message>
        <source>Corvo-ControlClient.318e6af47a1443d4a0fa524f2e0e4003.msg</source>
        <translation>PTZ of %1 is locked by %3 (level %2); %4 remaining.</translation>
    </message>
    <message>
        <source>Corvo-ControlClient.83f5f3553ca74918b81fa92d748d93ea.msg</source>
        <translation>PTZ of %1 is locked by %3 (level %2); you may take it over.</translation>
    </message>
    <message>
        <source>Corvo-ControlClient.GetPtzConfigurationSuccess.msg</source>
        <translation>PTZ information updated.</translation>
    </message>
    <message>
        <source>Preset</source>
        <translation>Preset</translation>
    </message>
    <message>
        <source>Patrol</source>
        <translation>Patrol</translation>
    </message>
    <message>
        <source>Pattern</source>
        <translation>Pattern</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Edit</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Call</source>
        <translation>Call</translation>
    </message>
    <message>
        <source>NameCanNotBeEmpty</source>
        <translation>The name cannot be empty.</translation>
    </message>
    <message>
        <source>InvalidPresetPointName</source>
        <translation>Invalid preset name.</translation>
    </message>
    <message>
        <source>TheInputCannotContainAnyOfTheFollowingCharacters</source>
        <translation>The name cannot contain any of these characters:</translation>
    </message>
    <message>
        <source>PresetNameInvisibleCharacters</source>
        <translation>The name cannot contain control characters or text-direction marks.</translation>
    </message>
    <message>
        <source>NoMoreThan%1CharactersCanBeInput</source>
        <translation>No more than %1 characters can be entered.</translation>
    </message>
    <message>
        <source>PresetNameAlreadyExists</source>
        <translation>A preset with this name already exists.</translation>
    </message>
    <message>
        <source>FailedToGetThePresetjcOUTbb</source>
        <translation>Failed to get the presets.</translation>
    </message>
    <message>
        <source>PleaseSelectAPresetPaIngnBeI</source>
        <translation>Please select a preset to edit.</translation>
    </message>
    <message>
        <source>PleaseSelectAPresetPrknxDNBA</source>
        <translation>Please select a preset to delete.</translation>
    </message>
    <message>
        <source>ConfirmToDelete</source>
        <translation>Delete this preset?</translation>
    </message>
    <message>
        <source>PleaseSelectAPresetPrknxDNBA</source>
        <comment>pattern</comment>
        <translation>Please select a pattern.</translation>
    </message>
    <message>
        <source>ConfirmToDelete</source>
        <comment>pattern</comment>
        <translation>Delete this pattern?</translation>
    </message>
    <message>
        <source>Corvo-ControlClient.e7fc316a038f48f2a6cbcab348cb9a1b.msg</source>
        <translation>A pattern is being recorded on this camera. Stop the recording first.</translation>
    </message>
    <message>
        <source>FailedToGetPatterns</source>
        <translation>Failed to get the camera's patterns.</translation>
    </message>
    <message>
        <source>PleaseSelectACruisePEPKFIMFo</source>
        <translation>Select a patrol first.</translation>
    </message>
    <message>
        <source>ThePatrolRequestGotNoAnswer</source>
        <translation>The camera did not answer the patrol request. The patrol page can be used again; please try once more.</translation>
    </message>
    <message>
        <source>ThePatrolCouldNotBeStarted</source>
        <translation>The patrol could not be started: none of its points can be shown.</translation>
    </message>
    <message>
        <source>AddPatrolPoint</source>
        <translation>Add a point</translation>
    </message>
    <message>
        <source>MovePatrolPointUp</source>
        <translation>Move the point up</translation>
    </message>
    <message>
        <source>TheMaximumNumberOfCrhuRLUhpy</source>
        <translation>A patrol holds at most 32 points.</translation>
    </message>
    <message>
        <source>NoPresetPointIsAvailOJPfSsBC</source>
        <translation>No preset of this kind is available. Add a preset first.</translation>
    </message>
    <message>
        <source>PleaseSelectACruisePeEYjvBRk</source>
        <translation>Select a point of the path first.</translation>
    </message>
    <message>
        <source>ThisOperationWillStocdYSojGC</source>
        <translation>This patrol is running. Saving its path stops it. Save anyway?</translation>
    </message>
    <message>
        <source>FailedToModifyCruiseskhaYaoN</source>
        <translation>The patrol could not be saved.</translation>
    </message>
    <message>
        <source>InvalidCruisePathNamdmlYVWU</source>
        <translation>Invalid patrol name.</translation>
    </message>
    <message>
        <source>TheInputCannotContainAnyOfTheFollowingCh</source>
        <translation>The name cannot contain any of these characters:</translation>
    </message>
    <message>
        <source>NameAlreadyExists</source>
        <translation>This name is already in use.</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::CPatternTableModel</name>
    <message>
        <source>Track%LSFuNRhoUtBhyfpg</source>
        <translation>Pattern %1</translation>
    </message>
    <message>
        <source>CallBQA8YLFY</source>
        <translation>Play</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>StartRecordingPattern</source>
        <translation>Start recording</translation>
    </message>
    <message>
        <source>StopRecordingPattern</source>
        <translation>Stop recording</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::CPTZPanelLeft</name>
    <message>
        <source>Slow</source>
        <translation>Slow</translation>
    </message>
    <message>
        <source>Fast</source>
        <translation>Fast</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::CPTZPanelRight</name>
    <message>
        <source>Preset</source>
        <translation>Preset</translation>
    </message>
    <message>
        <source>(0/0)</source>
        <translation>(0/0)</translation>
    </message>
    <message>
        <source>Patrol</source>
        <translation>Patrol</translation>
    </message>
    <message>
        <source>TheNameOfTheCruisexXBdqkYbSX</source>
        <translation>Patrol name</translation>
    </message>
    <message>
        <source>delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>UnderTheE41GE064</source>
        <translation>Move down</translation>
    </message>
    <message>
        <source>PresetPointTypeqTNqFYKAXXGm</source>
        <translation>Preset type</translation>
    </message>
    <message>
        <source>DevicePresetPointCSKgdZtSsjR</source>
        <translation>Device</translation>
    </message>
    <message>
        <source>VirtualPresetPointAhLADYAAWH</source>
        <translation>Virtual</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>UndoMerge</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Pattern</source>
        <translation>Pattern</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::CPresetTableModel</name>
    <message>
        <source>Preset%1</source>
        <translation>Preset %1</translation>
    </message>
    <message>
        <source>CallBQA8YLFY</source>
        <translation>Call</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Edit</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::CBasePresetDialog</name>
    <message>
        <source>Corvo-ControlClient.785d92c52d5f40a581ca3147ddf843f0.name</source>
        <translation>Enter a preset name</translation>
    </message>
    <message>
        <source>ConfirmVRJPEoDzfHCIl</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>UndoMerge</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>SaveTheCurrentPrevieAQFmbSJV</source>
        <translation>Turn the camera to the view the preset should keep.</translation>
    </message>
    <message>
        <source>SetThePresetPointNamctfFPEZP</source>
        <translation>Name the preset.</translation>
    </message>
    <message>
        <source>Corvo-ControlClient.fa06703a00a54fd898a1b33528b7c4d3.msg</source>
        <translation>Choose the preset number.</translation>
    </message>
    <message>
        <source>TheNameCannotBeEmptyuwCnESOS</source>
        <translation>The name cannot be empty.</translation>
    </message>
    <message>
        <source>InvalidPresetPointName</source>
        <translation>Invalid preset name.</translation>
    </message>
    <message>
        <source>TheInputCannotContainAnyOfTheFollowingCharacters</source>
        <translation>The name cannot contain any of these characters:</translation>
    </message>
    <message>
        <source>PresetNameInvisibleCharacters</source>
        <translation>The name cannot contain control characters or text-direction marks.</translation>
    </message>
    <message>
        <source>NoMoreThan%1CharactersCanBeInput</source>
        <translation>No more than %1 characters can be entered.</translation>
    </message>
    <message>
        <source>ThePresetPointNameAlakrzNA</source>
        <translation>A preset with this name already exists.</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::CAddPresetDialog</name>
    <message>
        <source>AddPreset</source>
        <translation>Add preset</translation>
    </message>
    <message>
        <source>Preset%1</source>
        <translation>Preset %1</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::CEditPresetDialog</name>
    <message>
        <source>ModifyPreset</source>
        <translation>Edit preset</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::CUnLockedFrame</name>
    <message>
        <source>Lock</source>
        <translation>Lock this camera</translation>
    </message>
    <message>
        <source>Corvo-ControlClient.eea1e66096ec44169b26b57aeaf0cae7.name</source>
        <translation>PTZ level</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::UnLockedFrameUI</name>
    <message>
        <source>Lock</source>
        <translation>Lock this camera</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::CAboutLockFrame</name>
    <message>
        <source>Corvo-ControlClient.28383cbadd24465f890c61d87e7d9aa7.msg</source>
        <translation>Enter a lock time from %1 to %2 seconds.</translation>
    </message>
    <message>
        <source>LockTimeLaDOtBsbdskBDWea</source>
        <translation>Lock for</translation>
    </message>
    <message>
        <source>SecondsBRH1H3KO</source>
        <translation>s</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>Lock</translation>
    </message>
    <message>
        <source>UndoMerge</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::AboutLockFrameUI</name>
    <message>
        <source>DetermineYTtNUlSLQD</source>
        <translation>Lock</translation>
    </message>
    <message>
        <source>UndoMerge</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::CLockedFrame</name>
    <message>
        <source>Lock</source>
        <translation>Extend the lock</translation>
    </message>
    <message>
        <source>UnLock</source>
        <translation>Unlock</translation>
    </message>
    <message>
        <source>Corvo-ControlClient.9e030b79c68742eba3246ff80c74fc33.msg</source>
        <translation>Locked by %1</translation>
    </message>
    <message>
        <source>Corvo-ControlClient.bc3d5481117d4029a36d9c2749739dfe.msg</source>
        <translation>PTZ is busy</translation>
    </message>
    <message>
        <source>Corvo-ControlClient.bf3a5ac010ea4e0a8ee9bdb92fa76e18.button</source>
        <translation>Details</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::LockedFrameUI</name>
    <message>
        <source>Lock</source>
        <translation>Extend the lock</translation>
    </message>
    <message>
        <source>UnLock</source>
        <translation>Unlock</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::CCruiseRecoverConfigDlg</name>
    <message>
        <source>Corvo-ControlClient.82e6ab8cc01e42e5809d4a79141a94c5.name</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>Corvo-ControlClient.ebb7e877a67544a1b18fae5e1fcce324.msg</source>
        <translation>Resume an interrupted patrol</translation>
    </message>
    <message>
        <source>Corvo-ControlClient.543a9e1befed4798b2d985456115c0a5.msg</source>
        <translation>Resume after</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Save</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::CParkActionDlg</name>
    <message>
        <source>YuntaiWatchman</source>
        <translation>Park action</translation>
    </message>
    <message>
        <source>QPrVEcffUXjvAHaXUv</source>
        <translation>What the camera does by itself after it is left idle for the waiting time.</translation>
    </message>
    <message>
        <source>Seconds</source>
        <translation>s</translation>
    </message>
    <message>
        <source>Corvo-ControlClient.a823d37fc23f4205bf7a7fe4a8112a6e.msg</source>
        <translation>The saved preset or patrol no longer exists; choose another.</translation>
    </message>
    <message>
        <source>None</source>
        <translation>None</translation>
    </message>
    <message>
        <source>Patrol%1</source>
        <translation>Patrol %1</translation>
    </message>
    <message>
        <source>MisconfigurationOfGiTlajSusB</source>
        <translation>The waiting time must be from 5 to 720 seconds.</translation>
    </message>
    <message>
        <source>Range</source>
        <translation>Range</translation>
    </message>
    <message>
        <source>WaitingTimeTBBVTCQ1</source>
        <translation>Waiting time</translation>
    </message>
    <message>
        <source>WatchPosition</source>
        <translation>Action</translation>
    </message>
    <message>
        <source>CurrentPreviewScreen</source>
        <translation>Current view</translation>
    </message>
    <message>
        <source>Preset</source>
        <translation>Preset</translation>
    </message>
    <message>
        <source>Patrol</source>
        <translation>Patrol</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>Save</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::CCruiseTableModel</name>
    <message>
        <source>Patrol%1</source>
        <translation>Patrol %1</translation>
    </message>
    <message>
        <source>CallBQA8YLFY</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Edit</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::CCruiseTableEditModel</name>
    <message>
        <source>Preset</source>
        <translation>Preset</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Speed</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Time (s)</translation>
    </message>
    <message>
        <source>Preset%1</source>
        <translation>Preset %1</translation>
    </message>
    <message>
        <source>PatrolPointPresetMissing%1</source>
        <translation>Preset %1 (deleted)</translation>
    </message>
</context>
<context>
    <name>PreviewPTZControl::CCruiseTableEditView</name>
    <message>
        <source>NoDataqrhgooag</source>
        <translation>No points yet. Add one with the + button.</translation>
    </message>
</context>
</TS>
