garage_test(tst_datetimetext)
garage_test(tst_duerule)
