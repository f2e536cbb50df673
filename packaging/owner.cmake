# Who stands behind the program, and what of that is not settled. It is said here and nowhere else; the
# packaging files take it from here.
set(KALDE2_OWNER "KALDE2 developers")
# There is no licence yet.
set(KALDE2_LICENCE LicenseRef-proprietary)
set(KALDE2_LICENCE_TEXT "No licence has been granted yet: the authors keep all rights.")
# That of the metainfo file alone. AppStream wants one that lets everybody pass the file on.
set(KALDE2_METAINFO_LICENCE FSFAP)
# There is no homepage yet, and no address; a Debian package has to have the form of one.
set(KALDE2_ADDRESS kalde2@localhost)
