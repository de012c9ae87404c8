pls
[playlist]
File2=b.mp3
Title2=B
File1=a.mp3
Length1=5
NumberOfEntries=2
Version=2
