-- The kit's version. It goes up when saved games of the version before cannot go on with the kit: the Runner's
-- fingerprint of a game takes it in place of the kit's text, so any other update of the kit spoils no save.
return 1
